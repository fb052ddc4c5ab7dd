#pragma once

#include "folders/MySingleFolder.h"

#include <QList>

namespace orv {

// For undo commands made of folder entries (a `folder` each) and item entries (a `pic` each).

// The folders the command touches: those of its folder entries, then those of its items, each once.
template <typename FolderChange, typename PicChange>
QList<MySingleFolder *> foldersOfChanges(const QList<FolderChange> &folders, const QList<PicChange> &pics)
{
    QList<MySingleFolder *> result;
    for (const FolderChange &change : folders)
        result.append(change.folder);
    for (const PicChange &change : pics) {
        MySingleFolder *folder = MySingleFolder::of(*change.pic);
        if (!result.contains(folder))
            result.append(folder);
    }
    return result;
}

// Both lists without the folder's entries; answers whether any entry is left.
template <typename FolderChange, typename PicChange>
bool removeChangesOfFolder(QList<FolderChange> &folders, QList<PicChange> &pics, const MySingleFolder *folder)
{
    folders.removeIf([folder](const FolderChange &c) { return c.folder == folder; });
    pics.removeIf([folder](const PicChange &c) { return MySingleFolder::of(*c.pic) == folder; });
    return !folders.isEmpty() || !pics.isEmpty();
}

} // namespace orv
