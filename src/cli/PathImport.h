#pragma once

#include <QStringList>
#include <QTextStream>
#include <memory>
#include <vector>

namespace orv {

class MySingleFolder;

// The folders the command-line tool makes of its PATH arguments: a folder's files (not
// recursing), or single files in the folder that holds them. Empty tags take the file's date,
// since a script is never asked.
struct PathImport
{
    std::vector<std::unique_ptr<MySingleFolder>> folders;
    // Some path did not exist or could not be read; that was said on `err`.
    bool failed = false;

    static PathImport importPaths(const QStringList &paths, QTextStream &err);
};

} // namespace orv
