#include "app/NameChangeCommand.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QCoreApplication>
#include <QDir>

namespace orv {

namespace {

QList<MySingleFolder *> foldersOf(const std::vector<RenameItem> &items)
{
    QList<MySingleFolder *> folders;
    for (const RenameItem &item : items) {
        auto *folder = static_cast<MySingleFolder *>(item.pic->spSingleFolder);
        if (!folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}

QStringList problemsOf(const std::vector<RenameItem> &items)
{
    QStringList problems;
    for (const RenameItem &item : items) {
        if (!item.problem.isEmpty())
            problems << QDir(item.folder).filePath(item.from.value(0)) + QLatin1String(": ") + item.problem;
    }
    return problems;
}

} // namespace

bool NameChangeCommand::renameAndRecord(QUndoStack &stack, std::vector<RenameItem> items, const QString &journalPath,
                                        const Changed &changed, QString &problem)
{
    if (!RenameRun::execute(items, journalPath, problem))
        return false;
    std::vector<RenameItem> renamed;
    for (const RenameItem &item : items) {
        if (item.renamed)
            renamed.push_back(item);
    }
    changed(foldersOf(items), problemsOf(items));
    if (!renamed.empty()) {
        auto *command = new NameChangeCommand(std::move(renamed), journalPath, changed);
        command->skipNextApply(); // the files have their new names already
        stack.push(command);
    }
    return true;
}

NameChangeCommand::NameChangeCommand(std::vector<RenameItem> renamed, QString journalPath, Changed changed)
    : DateChangeCommand(
          QCoreApplication::translate("NameChangeCommand", "Rename %n File(s)", nullptr, int(renamed.size())), {}),
      m_renamed(std::move(renamed)), m_journalPath(std::move(journalPath)), m_changed(std::move(changed))
{
}

std::unique_ptr<DateChangeCommand> NameChangeCommand::withoutFolder(const MySingleFolder *folder) const
{
    std::vector<RenameItem> rest;
    for (const RenameItem &item : m_renamed) {
        if (item.pic->spSingleFolder != folder)
            rest.push_back(item);
    }
    if (rest.empty())
        return nullptr;
    return std::unique_ptr<DateChangeCommand>(new NameChangeCommand(std::move(rest), m_journalPath, m_changed));
}

QList<MySingleFolder *> NameChangeCommand::folders() const
{
    return foldersOf(m_renamed);
}

void NameChangeCommand::apply(bool forward)
{
    std::vector<RenameItem> items = m_renamed;
    for (RenameItem &item : items) {
        if (!forward)
            std::swap(item.from, item.to);
        item.problem.clear();
        item.renamed = false;
    }
    QString problem;
    if (!RenameRun::execute(items, m_journalPath, problem)) {
        m_changed({}, {problem});
        return;
    }
    m_changed(foldersOf(items), problemsOf(items));
}

} // namespace orv
