#include "folders/DropEntry.h"

#include <QDir>
#include <QFileInfo>

namespace orv {

std::optional<DropEntry> DropEntry::pathAndBookmarkFromAccessable(const QString &path)
{
    const QFileInfo info(path);
    DropEntry entry;
    entry.path = QDir::cleanPath(info.absoluteFilePath());
    entry.displayName = info.fileName();
    const QString suffix = info.suffix().toLower();
    if (info.isDir() && suffix == QLatin1String("orvstate")) {
        entry.isProject = true;
    } else if (info.isDir()) {
        entry.bookmarkData = FolderToken::forPath(entry.path);
        if (!entry.bookmarkData)
            return std::nullopt;
    } else if (suffix == QLatin1String("gpx")) {
        entry.isGpx = true;
    }
    return entry;
}

} // namespace orv
