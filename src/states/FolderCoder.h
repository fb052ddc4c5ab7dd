#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace orv {

class MySingleFolder;

// One imported folder of a state, as one CBOR map that stands on its own, so that folders are
// encoded and decoded in parallel. Items are written once each and referred to by their place
// in the folder (masters in order, then the two lists of dependents): a group's partners, the
// zones' item sets and the quick selection point at the same items again after reading, and
// every item is its folder's.
namespace FolderCoder {

inline constexpr qint64 stateVersion = 90;

QByteArray write(const MySingleFolder &folder);

struct ReadFolder
{
    std::unique_ptr<MySingleFolder> folder;
    QString problem; // why there is no folder
};
// where names the data in a problem ("savedFolders_v6, folder 2").
ReadFolder read(const QByteArray &data, const QString &where);

} // namespace FolderCoder

} // namespace orv
