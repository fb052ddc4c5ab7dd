#include "app/RemoveCommand.h"

#include "app/TrashCommand.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QCoreApplication>

namespace orv {

std::unique_ptr<RemoveCommand> RemoveCommand::forPics(const QList<MySinglePic *> &pics, DateChangeListener listener)
{
    QList<Entry> entries;
    for (MySinglePic *pic : pics) {
        MySinglePic *master = pic->bundleMasterImage ? pic->bundleMasterImage : pic;
        const MySingleFolder *folder = MySingleFolder::of(*master);
        if (master->isMovedToTrash || !folder->sfPicDetails_fullArray.contains(master) ||
            std::any_of(entries.cbegin(), entries.cend(), [master](const Entry &e) { return e.pic == master; }))
            continue;
        entries.append({master, folder->sfPicDetails_fullArray.indexOf(master)});
    }
    if (entries.isEmpty())
        return nullptr;
    // Back in ascending places, so that each takes its old index again.
    std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        return a.pic->spSingleFolder != b.pic->spSingleFolder ? a.pic->spSingleFolder < b.pic->spSingleFolder
                                                              : a.index < b.index;
    });
    return std::unique_ptr<RemoveCommand>(new RemoveCommand(std::move(entries), std::move(listener)));
}

RemoveCommand::RemoveCommand(QList<Entry> entries, DateChangeListener listener)
    : DateChangeCommand(QCoreApplication::translate("RemoveCommand", "Remove %n Item(s) from the Working Set", nullptr,
                                                    int(entries.size())),
                        std::move(listener)),
      m_entries(std::move(entries))
{
}

void RemoveCommand::apply(bool forward)
{
    QList<MySingleFolder *> changed;
    const auto each = [&](Entry &entry) {
        MySingleFolder *folder = MySingleFolder::of(*entry.pic);
        if (forward)
            folder->sfPicDetails_fullArray.removeOne(entry.pic);
        else
            folder->sfPicDetails_fullArray.insert(std::min(entry.index, folder->sfPicDetails_fullArray.size()),
                                                  entry.pic);
        TrashCommand::setMovedToTrash(*entry.pic, forward);
        if (!changed.contains(folder))
            changed.append(folder);
    };
    // Out from the back, in from the front: every index stays true.
    if (forward)
        std::for_each(m_entries.rbegin(), m_entries.rend(), each);
    else
        std::for_each(m_entries.begin(), m_entries.end(), each);
    TrashCommand::recountFolders(changed);
    if (m_listener.datesChanged)
        m_listener.datesChanged(changed);
}

std::unique_ptr<DateChangeCommand> RemoveCommand::withoutFolder(const MySingleFolder *folder) const
{
    QList<Entry> kept = m_entries;
    kept.removeIf([folder](const Entry &e) { return e.pic->spSingleFolder == folder; });
    if (kept.isEmpty())
        return nullptr;
    return std::unique_ptr<RemoveCommand>(new RemoveCommand(std::move(kept), m_listener));
}

QList<MySingleFolder *> RemoveCommand::folders() const
{
    QList<MySingleFolder *> folders;
    for (const Entry &entry : m_entries) {
        MySingleFolder *folder = MySingleFolder::of(*entry.pic);
        if (!folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}

} // namespace orv
