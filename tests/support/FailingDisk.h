#pragma once

#include "formats/InPlaceWriter.h"

#include <QString>

namespace orv::test {

// A disk that gives out while a save runs: files whose name is `failingName` open as usual, but
// refuse the write that follows `writesBeforeFailure` good ones, or, with `failsSync`, never
// reach the disk. Every other file is written for real.
class FailingDisk : public FileWriteAccess
{
public:
    QString failingName;
    int writesBeforeFailure = -1; // -1: every write goes through
    bool failsSync = false;

    std::unique_ptr<InPlaceWriter> openForUpdate(const QString &path) override;
};

} // namespace orv::test
