#include "core/FileAttributes.h"

#include <QFileInfo>

namespace orv {

std::optional<FileAttributes> FileAttributes::read(const QString &path)
{
    return fromStatus(FileStatus::of(path), path);
}

std::optional<FileAttributes> FileAttributes::fromStatus(const FileStatus &status,
                                                         const QString &path)
{
    if (status.kind == FileStatus::Kind::Missing)
        return std::nullopt;
    FileAttributes a;
    a.modificationDate = Instant(status.modificationTime);
    // A copy is born anew, while cp -p, rsync and card readers carry the modification time over:
    // the earlier of the two is the nearer to the moment the file was made.
    a.creationDate = status.birthTime && *status.birthTime < status.modificationTime
                         ? Instant(*status.birthTime)
                         : a.modificationDate;
    a.size = status.size;
    a.isDirectory = status.kind == FileStatus::Kind::Directory;
    a.isRegularFile = status.kind == FileStatus::Kind::Regular;
    a.isExtensionHidden = QFileInfo(path).fileName().startsWith(QLatin1Char('.'));
    return a;
}

} // namespace orv
