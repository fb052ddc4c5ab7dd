#pragma once

#include <QString>

namespace orv {

// What a finding of the pre-check (error_01_ambiguousStamp, ...) means for the save, in words;
// the key itself for one this version does not know.
QString describePreSaveKey(const QString &key);

} // namespace orv
