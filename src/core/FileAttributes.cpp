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
    a.creationDate = status.birthTime ? Instant(*status.birthTime) : a.modificationDate;
    a.size = status.size;
    a.isDirectory = status.kind == FileStatus::Kind::Directory;
    a.isRegularFile = status.kind == FileStatus::Kind::Regular;
    a.isExtensionHidden = QFileInfo(path).fileName().startsWith(QLatin1Char('.'));
    return a;
}

} // namespace orv
