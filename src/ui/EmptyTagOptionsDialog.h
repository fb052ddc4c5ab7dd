#pragma once

#include "core/ImportOptions.h"
#include "time/TimeZone.h"

#include <QDialog>

class QCheckBox;
class QRadioButton;

namespace orv {

class DateSequenceFields;

// Asked once per folder when a file has a date tag that exists but is empty: take the file's
// own date, or hand out fixed dates from a start with a step.
class EmptyTagOptionsDialog : public QDialog
{
    Q_OBJECT
public:
    EmptyTagOptionsDialog(const QString &folderName, const ImportOptions &preset, TimeZone zone,
                          QWidget *parent = nullptr);

    // The preset with the user's choice for empty tags.
    ImportOptions answer() const;
    // Use the file date from now on without asking.
    bool dontAskAgain() const;

private:
    ImportOptions m_preset;
    QRadioButton *m_useFileDate;
    QRadioButton *m_useFixedDates;
    DateSequenceFields *m_sequence;
    QCheckBox *m_dontAskAgain;
};

} // namespace orv
