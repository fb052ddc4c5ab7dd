#pragma once

#include "core/PreSaveFindings.h"

#include <QDialog>

namespace orv {

// The question before a save writes anything: what the check found, kind by kind with the files
// it concerns. Save Anyway saves what can be saved; Cancel leaves every file untouched.
class PreSaveSummaryDialog : public QDialog
{
    Q_OBJECT
public:
    PreSaveSummaryDialog(const QList<PreSaveFinding> &findings, qsizetype entryCount, QWidget *parent = nullptr);
};

} // namespace orv
