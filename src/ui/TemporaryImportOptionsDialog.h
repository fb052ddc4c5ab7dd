#pragma once

#include "folders/ImportKeyStates.h"
#include "time/TimeZone.h"

#include <QDialog>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

namespace orv {

class DateSequenceFields;

// The options of one drop, asked before it is imported: what kind of folder, how its dates
// move, subfolders, groups, a sequence of dates, a filter by file type.
class TemporaryImportOptionsDialog : public QDialog
{
    Q_OBJECT
public:
    TemporaryImportOptionsDialog(const TemporaryImportOptions &preset, bool alwaysShown, TimeZone zone,
                                 QWidget *parent = nullptr);

    // The preset with the user's choices.
    TemporaryImportOptions options() const;
    // Whether the sheet is to come up at every drop, or only with its key held.
    bool alwaysShown() const;

private:
    QWidget *buildKindChoice();
    QWidget *buildEditModeChoice();
    QWidget *buildFilter();
    void updateWarning();

    TemporaryImportOptions m_preset;
    QButtonGroup *m_kind;
    QButtonGroup *m_editMode;
    QCheckBox *m_subfolders;
    QCheckBox *m_groupFiles;
    QCheckBox *m_correctDates;
    QCheckBox *m_sequenceEnabled;
    DateSequenceFields *m_sequence;
    QCheckBox *m_filterEnabled;
    QComboBox *m_filterType;
    QLineEdit *m_filterText;
    QLabel *m_warning;
    QCheckBox *m_alwaysShown;
};

} // namespace orv
