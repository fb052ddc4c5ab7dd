#include "app/TrashCommand.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

namespace orv {

void TrashCommand::setMovedToTrash(MySinglePic &pic, bool trashed)
{
    pic.isMovedToTrash = trashed;
    if (pic.bundleDependentImage)
        pic.bundleDependentImage->isMovedToTrash = trashed;
}

void TrashCommand::recountFolders(const QList<MySingleFolder *> &folders)
{
    for (MySingleFolder *folder : folders) {
        folder->sfUpdatePicsFromAndTill();
        folder->updateFolderValuesOnPicMove();
        folder->recountKeepersAndRejects();
    }
}

TrashCommand::TrashCommand(QList<Entry> entries, const QString &text, DateChangeListener listener)
    : DateChangeCommand(text, std::move(listener)), m_entries(std::move(entries))
{
}

bool TrashCommand::moveToTrash(Entry &entry)
{
    for (const QString &path : std::as_const(entry.paths)) {
        QString error;
        if (const std::optional<TrashedFile> trashed = FreedesktopTrash::moveToTrash(path, &error)) {
            entry.trashed.append(*trashed);
            continue;
        }
        m_problems.append(path + QStringLiteral(": ") + error);
        // Without its main file the item stays where it is.
        if (entry.trashed.isEmpty())
            return false;
    }
    return true;
}

bool TrashCommand::putBack(Entry &entry)
{
    // Sidecars first, the main file last: the item returns with its main file.
    bool mainBack = false;
    while (!entry.trashed.isEmpty()) {
        const TrashedFile file = entry.trashed.takeLast();
        QString error;
        const bool back = FreedesktopTrash::restore(file, &error);
        if (!back)
            m_problems.append(file.originalPath + QStringLiteral(": ") + error);
        mainBack = back && entry.trashed.isEmpty();
    }
    return mainBack;
}

void TrashCommand::apply(bool forward)
{
    m_problems.clear();
    QList<MySingleFolder *> changed;
    // Items come back in their folders' order, so that each takes its old index again.
    for (Entry &entry : m_entries) {
        MySingleFolder *folder = MySingleFolder::of(*entry.pic);
        const bool inTrash = entry.pic->isMovedToTrash;
        if (forward == inTrash)
            continue;
        if (forward ? !moveToTrash(entry) : !putBack(entry))
            continue;
        if (forward) {
            entry.index = folder->sfPicDetails_fullArray.indexOf(entry.pic);
            folder->sfPicDetails_fullArray.removeOne(entry.pic);
        } else {
            folder->sfPicDetails_fullArray.insert(
                std::min(entry.index, folder->sfPicDetails_fullArray.size()), entry.pic);
        }
        setMovedToTrash(*entry.pic, forward);
        if (!changed.contains(folder))
            changed.append(folder);
    }
    recountFolders(changed);
    if (!changed.isEmpty() && m_listener.datesChanged)
        m_listener.datesChanged(changed);
}

std::unique_ptr<DateChangeCommand> TrashCommand::withoutFolder(const MySingleFolder *folder) const
{
    QList<Entry> kept = m_entries;
    kept.removeIf([folder](const Entry &e) { return e.pic->spSingleFolder == folder; });
    if (kept.isEmpty())
        return nullptr;
    return std::make_unique<TrashCommand>(kept, text(), m_listener);
}

QList<MySingleFolder *> TrashCommand::folders() const
{
    QList<MySingleFolder *> folders;
    for (const Entry &entry : m_entries) {
        MySingleFolder *folder = MySingleFolder::of(*entry.pic);
        if (!folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}

QList<MySinglePic *> TrashCommand::trashedPics() const
{
    QList<MySinglePic *> pics;
    for (const Entry &entry : m_entries)
        if (entry.pic->isMovedToTrash)
            pics.append(entry.pic);
    return pics;
}

} // namespace orv
