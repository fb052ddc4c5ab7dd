#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>
#include <vector>

namespace orv {

class MySingleFolder;

// The folders file of a state: a CBOR map from the folders' places 0, 1, 2, ... to each folder's
// own encoding (FolderCoder), so that folders are encoded in parallel and read apart, each
// folder's items on the whole pool. The file starts
// with CBOR's self-describing tag, which tells a state from other bytes.
namespace SavedFolders {

// The folders whose first import has finished, in list order.
QByteArray write(const QList<MySingleFolder *> &folders);

struct ReadResult
{
    std::vector<std::unique_ptr<MySingleFolder>> folders;
    // Empty when the file was read; otherwise names the file and what is wrong, and no folder
    // was taken.
    QString problem;
};
// fileName names the file in a problem.
ReadResult read(const QByteArray &data, const QString &fileName);

} // namespace SavedFolders

} // namespace orv
