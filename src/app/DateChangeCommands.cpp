#include "app/DateChangeCommands.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <algorithm>
#include <optional>

namespace orv {

namespace {

template <typename Change, typename FolderOf>
QList<MySingleFolder *> distinctFolders(const QList<Change> &changes, FolderOf folderOf)
{
    QList<MySingleFolder *> folders;
    for (const Change &change : changes) {
        MySingleFolder *folder = folderOf(change);
        if (folder && !folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}

// Takes the next step of the same repeated gesture (the same targets in the same order) into
// mine: its "after" values replace mine. Returns nullopt when next is another gesture, else
// whether the merged step now changes nothing.
template <typename Change, typename Target>
std::optional<bool> mergeGestureStep(QList<Change> &mine, const QString &myKey, const QList<Change> &next,
                                     const QString &nextKey, Target target)
{
    if (myKey.isEmpty() || myKey != nextKey || mine.size() != next.size()
        || !std::equal(mine.cbegin(), mine.cend(), next.cbegin(),
                       [&target](const Change &a, const Change &b) { return target(a) == target(b); }))
        return std::nullopt;
    for (qsizetype i = 0; i < mine.size(); ++i)
        mine[i].after = next[i].after;
    return std::all_of(mine.cbegin(), mine.cend(), [](const Change &c) { return c.before == c.after; });
}

} // namespace

DateChangeCommand::DateChangeCommand(const QString &text, DateChangeListener listener)
    : QUndoCommand(text), m_listener(std::move(listener))
{
}

void DateChangeCommand::redo()
{
    if (std::exchange(m_skipNextApply, false))
        return;
    apply(true);
}

void DateChangeCommand::undo()
{
    if (std::exchange(m_skipNextApply, false))
        return;
    apply(false);
}

void DateChangeCommand::setEditMode(MySingleFolder &folder, int mode) const
{
    if (folder.sfEditMode == mode)
        return;
    folder.sfEditMode = mode;
    if (m_listener.editModeChanged)
        m_listener.editModeChanged(&folder);
}

FolderOffsetCommand::FolderOffsetCommand(QList<Change> changes, const QString &text, const QString &mergeKey,
                                         DateChangeListener listener)
    : DateChangeCommand(text, std::move(listener)), m_changes(std::move(changes)), m_mergeKey(mergeKey)
{
}

void FolderOffsetCommand::apply(bool forward)
{
    for (const Change &change : std::as_const(m_changes)) {
        setEditMode(*change.folder, MySingleFolder::EditTogether);
        const Offset &offset = forward ? change.after : change.before;
        change.folder->setSfDateModificationsFromTimeInterval(offset.interval, offset.direction);
    }
    if (m_listener.datesChanged)
        m_listener.datesChanged(folders());
}

bool FolderOffsetCommand::mergeWith(const QUndoCommand *other)
{
    const auto &next = static_cast<const FolderOffsetCommand &>(*other);
    const std::optional<bool> unchanged = mergeGestureStep(m_changes, m_mergeKey, next.m_changes, next.m_mergeKey,
                                                           [](const Change &c) { return c.folder; });
    if (unchanged)
        setObsolete(*unchanged);
    return unchanged.has_value();
}

std::unique_ptr<DateChangeCommand> FolderOffsetCommand::withoutFolder(const MySingleFolder *folder) const
{
    QList<Change> kept = m_changes;
    kept.removeIf([folder](const Change &c) { return c.folder == folder; });
    if (kept.isEmpty())
        return nullptr;
    return std::make_unique<FolderOffsetCommand>(kept, text(), QString(), m_listener);
}

QList<MySingleFolder *> FolderOffsetCommand::folders() const
{
    return distinctFolders(m_changes, [](const Change &c) { return c.folder; });
}

PicOffsetCommand::PicOffsetCommand(QList<Change> changes, const QString &text, const QString &mergeKey,
                                   DateChangeListener listener)
    : DateChangeCommand(text, std::move(listener)), m_changes(std::move(changes)), m_mergeKey(mergeKey)
{
}

void PicOffsetCommand::apply(bool forward)
{
    const QList<MySingleFolder *> changed = folders();
    for (MySingleFolder *folder : changed)
        setEditMode(*folder, MySingleFolder::EditSeparately);
    for (const Change &change : std::as_const(m_changes))
        MySingleFolder::of(*change.pic)->setSinglePicModification(*change.pic, forward ? change.after : change.before);
    for (MySingleFolder *folder : changed)
        folder->sfUpdatePicsFromAndTill();
    if (m_listener.datesChanged)
        m_listener.datesChanged(changed);
}

bool PicOffsetCommand::mergeWith(const QUndoCommand *other)
{
    const auto &next = static_cast<const PicOffsetCommand &>(*other);
    const std::optional<bool> unchanged = mergeGestureStep(m_changes, m_mergeKey, next.m_changes, next.m_mergeKey,
                                                           [](const Change &c) { return c.pic; });
    if (unchanged)
        setObsolete(*unchanged);
    return unchanged.has_value();
}

std::unique_ptr<DateChangeCommand> PicOffsetCommand::withoutFolder(const MySingleFolder *folder) const
{
    QList<Change> kept = m_changes;
    kept.removeIf([folder](const Change &c) { return c.pic->spSingleFolder == folder; });
    if (kept.isEmpty())
        return nullptr;
    return std::make_unique<PicOffsetCommand>(kept, text(), QString(), m_listener);
}

QList<MySingleFolder *> PicOffsetCommand::folders() const
{
    return distinctFolders(m_changes, [](const Change &c) { return MySingleFolder::of(*c.pic); });
}

QList<MySinglePic *> PicOffsetCommand::pics() const
{
    QList<MySinglePic *> pics;
    for (const Change &change : m_changes)
        pics.append(change.pic);
    return pics;
}

} // namespace orv
