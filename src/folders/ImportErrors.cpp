#include "folders/ImportErrors.h"

#include <QCoreApplication>

namespace orv {

namespace {

constexpr qsizetype namedPathsPerMessage = 5;

} // namespace

QString ImportErrors::describe(Kind kind, qsizetype count)
{
    const char *context = "ImportErrors";
    switch (kind) {
    case ImportErrors::ItemFailed:
        return QCoreApplication::translate(context, "%n file(s) could not be imported", nullptr, int(count));
    case ImportErrors::SidecarWithoutExtensionMatch:
        return QCoreApplication::translate(context, "%n sidecar file(s) match no file's extension", nullptr,
                                           int(count));
    case ImportErrors::SidecarWithoutItem:
        return QCoreApplication::translate(context, "%n sidecar file(s) belong to no imported file", nullptr,
                                           int(count));
    case ImportErrors::FolderUnreadable:
        return QCoreApplication::translate(context, "%n folder(s) could not be read (permission denied)",
                                           nullptr, int(count));
    case ImportErrors::FolderVanished:
        return QCoreApplication::translate(context, "%n folder(s) disappeared during the import", nullptr,
                                           int(count));
    case ImportErrors::SubfolderLoop:
        return QCoreApplication::translate(
            context, "%n subfolder(s) skipped: a link leads back to a folder above", nullptr, int(count));
    case ImportErrors::FileVanished:
        return QCoreApplication::translate(context, "%n file(s) disappeared before they could be read",
                                           nullptr, int(count));
    case ImportErrors::FileUnreadable:
        return QCoreApplication::translate(
            context, "%n file(s) cannot be read (permission denied); dated by the file system only", nullptr,
            int(count));
    case ImportErrors::FileEmpty:
        return QCoreApplication::translate(context, "%n file(s) are empty (0 bytes); dated by the file system only",
                                           nullptr, int(count));
    case ImportErrors::NotARegularFile:
        return QCoreApplication::translate(
            context, "%n item(s) skipped: not a regular file (a pipe, a socket or a device)",
            nullptr, int(count));
    case ImportErrors::LinkLeavesFolder:
        return QCoreApplication::translate(
            context, "%n linked subfolder(s) skipped: the link leads out of the imported folder",
            nullptr, int(count));
    case ImportErrors::SidecarUnreadable:
        return QCoreApplication::translate(
            context, "%n sidecar file(s) cannot be read; matched to their file by name alone", nullptr,
            int(count));
    case ImportErrors::ContentNotAsNamed:
        return QCoreApplication::translate(
            context, "%n file(s) skipped: the content is not the image its extension names (another kind "
                     "of file, or damaged)",
            nullptr, int(count));
    case ImportErrors::ImageDataMissing:
        return QCoreApplication::translate(
            context, "%n JPEG file(s) end before their image data (cut off, e.g. by an interrupted copy); "
                     "imported with the dates they hold, but no picture can be shown",
            nullptr, int(count));
    case ImportErrors::NameNotDecodable:
        return QCoreApplication::translate(
            context, "%n file(s) skipped: the name is not valid in this system's encoding; rename to open",
            nullptr, int(count));
    }
    return {};
}

void ImportErrors::addErrorID(int id, const QString &path)
{
    if (id == ItemFailed || id == SidecarWithoutExtensionMatch || id == SidecarWithoutItem)
        add(Kind(id), path);
}

QStringList ImportErrors::paths(Kind kind) const
{
    QStringList result;
    for (const Problem &problem : m_problems)
        if (problem.kind == kind)
            result.append(problem.path);
    return result;
}

QStringList ImportErrors::messages() const
{
    QList<Kind> kinds;
    for (const Problem &problem : m_problems)
        if (!kinds.contains(problem.kind))
            kinds.append(problem.kind);
    QStringList lines;
    for (const Kind kind : kinds) {
        const QStringList affected = paths(kind);
        QStringList named = affected.mid(0, namedPathsPerMessage);
        if (affected.size() > namedPathsPerMessage)
            named.append(QCoreApplication::translate("ImportErrors", "and %n more", nullptr,
                                                     int(affected.size() - namedPathsPerMessage)));
        lines.append(describe(kind, affected.size()) + QLatin1String(": ") + named.join(QLatin1String(", ")));
    }
    return lines;
}

} // namespace orv
