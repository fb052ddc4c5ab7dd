#pragma once

#include <QStringList>

namespace orv {

class ImportQuestions;
class MySingleFolder;

// Scans a list of files into a folder: the bytes of many files are read at once on all cores,
// then the items are made in the order of the list, so that dates drawn from import options
// come out the same on every run.
class FolderScanner
{
public:
    // The regular files directly inside a directory, in name order; empty when unreadable.
    static QStringList filesIn(const QString &directory);
    static void scanFiles(MySingleFolder &folder, const QStringList &paths, ImportQuestions &questions);
};

} // namespace orv
