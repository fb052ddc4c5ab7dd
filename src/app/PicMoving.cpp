#include "app/PicMoving.h"

#include "app/DateChanges.h"
#include "app/MoveCommand.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "naming/NameGenerator.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace orv {

namespace {

// The names in a folder, folded as a file system that folds case would see them.
QSet<QString> foldedNamesIn(const QString &folder)
{
    QSet<QString> names;
    const QStringList entries =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : entries)
        names.insert(name.toCaseFolded());
    return names;
}

QString text(const char *words)
{
    return QCoreApplication::translate("PicMoving", words);
}

// Why the item cannot move, in words; empty when it can.
QString reasonToStay(const MySinglePic &master, const QStringList &files, const QString &folder)
{
    if (master.isUnsaved() || (master.bundleDependentImage && master.bundleDependentImage->isUnsaved()))
        return text(QT_TRANSLATE_NOOP("PicMoving", "it has unsaved changes: save or undo them first"));
    if (!QFileInfo(folder).isWritable())
        return text(QT_TRANSLATE_NOOP("PicMoving", "its folder cannot be written"));
    for (const QString &name : files) {
        const QFileInfo file(QDir(folder).filePath(name));
        if (!file.isFile())
            return text(QT_TRANSLATE_NOOP("PicMoving", "%1 does not exist")).arg(name);
        if (!file.isWritable())
            return text(QT_TRANSLATE_NOOP("PicMoving", "%1: no write access")).arg(name);
    }
    return {};
}

} // namespace

MoveOutcome PicMoving::movePics(const QList<MySinglePic *> &pics, MySingleFolder &target, const QString &journalPath)
{
    MoveOutcome outcome;
    if (m_changes.isBlocked()) {
        if (m_listener.refused)
            m_listener.refused();
        return outcome;
    }
    const QString targetPath = QFileInfo(target.sfFolderPath).absoluteFilePath();
    if (!QFileInfo(targetPath).isWritable()) {
        outcome.problems << targetPath + QLatin1String(": ") + text(QT_TRANSLATE_NOOP("PicMoving", "the folder cannot be written"));
        return outcome;
    }
    QSet<QString> taken = foldedNamesIn(targetPath);
    std::vector<MoveCommand::Entry> entries;
    for (MySinglePic *pic : pics) {
        MySinglePic *master = pic->bundleMasterImage ? pic->bundleMasterImage : pic;
        MySingleFolder *from = MySingleFolder::of(*master);
        if (from == &target || std::any_of(entries.cbegin(), entries.cend(),
                                           [master](const auto &e) { return e.files.pic == master; }))
            continue;
        RenameItem item;
        item.pic = master;
        item.folder = QFileInfo(from->sfFolderPath).absoluteFilePath();
        item.from = RenameRun::filesOf(*master);
        if (const QString reason = reasonToStay(*master, item.from, item.folder); !reason.isEmpty()) {
            outcome.problems << QDir(item.folder).filePath(master->spName) + QLatin1String(": ") + reason;
            continue;
        }
        // One base name for all files of the item, the first number that frees it for all.
        const QString base = master->spBaseName().toString();
        const auto namesFor = [&](int number) {
            QStringList names;
            for (const QString &name : std::as_const(item.from))
                names << NameGenerator::numbered(base, number) + name.mid(base.size());
            return names;
        };
        const auto isTaken = [&taken](const QStringList &names) {
            return std::any_of(names.cbegin(), names.cend(),
                               [&taken](const QString &name) { return taken.contains(name.toCaseFolded()); });
        };
        int number = 0;
        while (isTaken(item.to = namesFor(number)))
            number = number == 0 ? 2 : number + 1;
        for (const QString &name : std::as_const(item.to))
            taken.insert(name.toCaseFolded());
        entries.push_back({item, from, &target, 0});
    }
    if (entries.empty())
        return outcome;
    auto command = std::make_unique<MoveCommand>(std::move(entries), journalPath, m_verifier, m_listener);
    // The first move is done here so that what it could not do is known; the stack then takes
    // the step as done.
    command->redo();
    outcome.moved = command->movedPics();
    outcome.problems += command->problems();
    if (outcome.moved.isEmpty())
        return outcome;
    command->dropUnmoved();
    command->skipNextApply();
    m_stack.push(command.release());
    return outcome;
}

} // namespace orv
