#pragma once

#include "states/StateTray.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class QToolButton;

namespace orv {

class Preferences;

// The tray's window: the kept states and folders of one folder of the tray, each state with its
// preview image, title, counts and span of dates. Keeping and opening are asked of the window's
// owner of states (StateSession); titles, notes and deleting to the trash are done here.
class StateTrayWindow : public QDialog
{
    Q_OBJECT
public:
    StateTrayWindow(StateTray &tray, Preferences &prefs, QWidget *parent);

    // The folder of the tray on show: the root joined with the remembered subfolder.
    QString currentFolderPath() const;
    void showFolder(const QString &path);
    void refreshData();
    // The text of a state's row: its name, then what it holds.
    static QString previewText(const TrayRow &row);

Q_SIGNALS:
    void storeRequested(const QString &folder);
    void openRequested(const QString &statePath);

private:
    void addRow(const TrayRow &row);
    const TrayRow *selectedRow() const;
    void rowActivated();
    void renameSelected();
    void editNoteOfSelected();
    void deleteSelected();
    void makeFolder();
    void sortChanged();
    void selectionChanged();

    StateTray &m_tray;
    Preferences &m_prefs;
    QLabel *m_location;
    QListWidget *m_list;
    QComboBox *m_sortType;
    QToolButton *m_sortDirection;
    QPushButton *m_open;
    QPushButton *m_rename;
    QPushButton *m_note;
    QPushButton *m_delete;
    QList<TrayRow> m_rows; // in list order
};

} // namespace orv
