#pragma once

#include "core/SaveQuestions.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace orv {

// One kind of problem the pre-check found, as the user reads it before deciding.
struct PreSaveFinding
{
    QString key;         // error_01_ambiguousStamp, ...
    QString description; // what it means for the save
    QStringList paths;   // the files concerned, in path order
};

// The findings in key order. Read while the run waits for the answer: the items do not change.
QList<PreSaveFinding> describePreSaveErrors(const PreSaveErrors &errors);

// The number of entries over all kinds: an item with two problems counts twice.
qsizetype preSaveEntryCount(const PreSaveErrors &errors);

} // namespace orv
