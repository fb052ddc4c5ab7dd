#pragma once

#include "folders/FolderTimeZones.h"

#include <QDialog>
#include <QHash>
#include <QUndoStack>

class QComboBox;
class QLabel;
class QTableWidget;

namespace orv {

class DateChanges;
class MySingleFolder;
class MySinglePic;

// The time zone sheet of one folder: the zone its stamps were written in and the zone a save
// writes them in, a row per item previewing both, and the choice of the other hour where an
// item's hour is repeated. It edits copies of the folder's zones with an undo of its own; nothing
// reaches the folder before OK, which hands everything to the owner as one undo step on the main
// stack. The previews come from the model (ZoneCorrection::preview), which the command line's
// save follows too. Main thread only.
class MyTimeZonePickerController : public QDialog
{
    Q_OBJECT

public:
    MyTimeZonePickerController(DateChanges &changes, MySingleFolder &folder, QWidget *parent = nullptr);

    // The working zones, for tests and the details.
    const FolderTimeZones &sourceTimeZones() const { return m_source; }
    const FolderTimeZones &targetTimeZones() const { return m_target; }
    QUndoStack &undoStack() { return m_undo; }
    QTableWidget &table() const { return *m_table; }
    // A folder selector's choice by zone name ("_SYSTEM", "_UNCHANGED_LEFT_FOLDER" or an IANA
    // name), as the user picks it: one step of the sheet's undo.
    void selectZoneName(const QString &name, bool forTarget);
    // The row's choice of the other hour, one step of the sheet's undo.
    void useAmbiguityAlternative(int row, bool on);

    void accept() override;

private:
    struct Zones
    {
        FolderTimeZones source, target;
    };
    void setZones(const Zones &zones);
    void setChoices(const QHash<MySinglePic *, qint64> &choices);
    void reload();
    void updateSelectionDetails();

    DateChanges &m_changes;
    MySingleFolder &m_folder;
    QList<MySinglePic *> m_pics;
    FolderTimeZones m_source, m_target;
    QHash<MySinglePic *, qint64> m_choices;
    QUndoStack m_undo;
    QComboBox *m_sourceBox;
    QComboBox *m_targetBox;
    QTableWidget *m_table;
    QLabel *m_details;
    bool m_reloading = false;
};

} // namespace orv
