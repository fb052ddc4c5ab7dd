#include "app/PicTrashing.h"

#include "app/DateChanges.h"
#include "app/TrashCommand.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace orv {

namespace {

// Every file of an item that exists: the main file first, then its group's dependent, then the
// sidecars of both.
QStringList filesOf(const MySinglePic &pic)
{
    QStringList paths{pic.spPath()};
    if (const MySinglePic *dependent = pic.bundleDependentImage) {
        paths.append(dependent->spPath());
        paths += dependent->spSidecarPaths();
    }
    paths += pic.spSidecarPaths();
    paths.removeDuplicates();
    paths.removeIf([](const QString &path) { return !QFileInfo::exists(path); });
    return paths;
}

// A file that exists but cannot be changed by us would fail half-way: its item stays whole.
QString firstUnwritable(const QStringList &paths)
{
    for (const QString &path : paths) {
        const QFileInfo file(path);
        if (!file.isWritable() || !QFileInfo(file.absolutePath()).isWritable())
            return path;
    }
    return {};
}

bool hasTrashForAll(const QStringList &paths)
{
    return std::all_of(paths.cbegin(), paths.cend(),
                       [](const QString &path) { return FreedesktopTrash::trashFor(path).has_value(); });
}

} // namespace

TrashOutcome PicTrashing::movePicsToTrash(const QList<MySinglePic *> &pics, TrashQuestions &questions)
{
    TrashOutcome outcome;
    if (m_changes.isBlocked()) {
        if (m_listener.refused)
            m_listener.refused();
        return outcome;
    }
    QList<TrashCommand::Entry> entries;
    QList<TrashCommand::Entry> withoutTrash;
    QStringList withoutTrashPaths;
    for (MySinglePic *pic : pics) {
        MySinglePic *master = pic->bundleMasterImage ? pic->bundleMasterImage : pic;
        if (master->isMovedToTrash
            || std::any_of(entries.cbegin(), entries.cend(), [master](const auto &e) { return e.pic == master; })
            || std::any_of(withoutTrash.cbegin(), withoutTrash.cend(),
                           [master](const auto &e) { return e.pic == master; }))
            continue;
        const QStringList paths = filesOf(*master);
        if (paths.isEmpty()) {
            outcome.problems.append(
                master->spPath() + QLatin1String(": ") +
                QCoreApplication::translate("PicTrashing", "it does not exist"));
            continue;
        }
        if (const QString unwritable = firstUnwritable(paths); !unwritable.isEmpty()) {
            outcome.problems.append(unwritable + QLatin1String(": ") +
                                    QCoreApplication::translate("PicTrashing", "no write access"));
            continue;
        }
        if (hasTrashForAll(paths)) {
            entries.append({master, paths, {}, 0});
        } else {
            withoutTrash.append({master, paths, {}, 0});
            withoutTrashPaths += paths;
        }
    }

    if (!withoutTrash.isEmpty() && questions.deleteWithoutTrash(withoutTrashPaths)) {
        QList<MySingleFolder *> changed;
        for (const TrashCommand::Entry &entry : std::as_const(withoutTrash)) {
            for (const QString &path : entry.paths)
                if (!QFile::remove(path))
                    outcome.problems.append(
                        path + QLatin1String(": ") +
                        QCoreApplication::translate("PicTrashing", "it could not be deleted"));
            if (QFileInfo::exists(entry.paths.first()))
                continue;
            MySingleFolder *folder = MySingleFolder::of(*entry.pic);
            folder->sfPicDetails_fullArray.removeOne(entry.pic);
            TrashCommand::setMovedToTrash(*entry.pic, true);
            outcome.deleted.append(entry.pic);
            if (!changed.contains(folder))
                changed.append(folder);
        }
        TrashCommand::recountFolders(changed);
        if (!changed.isEmpty() && m_listener.datesChanged)
            m_listener.datesChanged(changed);
    } else {
        for (const TrashCommand::Entry &entry : std::as_const(withoutTrash))
            outcome.problems.append(
                entry.paths.first() + QLatin1String(": ") +
                QCoreApplication::translate("PicTrashing", "no trash on its file system; kept"));
    }

    if (entries.isEmpty())
        return outcome;
    const QString text = QCoreApplication::translate("TrashCommand", "Move to Trash");
    auto command = std::make_unique<TrashCommand>(std::move(entries), text, m_listener);
    // The first trashing is done here so that what it could not do is known; the stack then
    // takes the step as done.
    command->redo();
    outcome.trashed = command->trashedPics();
    outcome.problems += command->problems();
    if (outcome.trashed.isEmpty())
        return outcome;
    command->skipNextApply();
    m_stack.push(command.release());
    return outcome;
}

} // namespace orv
