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
    if (!renamed.empty())
        stack.push(new NameChangeCommand(std::move(renamed), journalPath, changed));
    return true;
}

NameChangeCommand::NameChangeCommand(std::vector<RenameItem> renamed, QString journalPath, Changed changed)
    : m_renamed(std::move(renamed)), m_journalPath(std::move(journalPath)), m_changed(std::move(changed))
{
    setText(QCoreApplication::translate("NameChangeCommand", "Rename %n File(s)", nullptr, int(m_renamed.size())));
}

void NameChangeCommand::redo()
{
    if (m_done) {
        m_done = false;
        return;
    }
    move(false);
}

void NameChangeCommand::move(bool back)
{
    std::vector<RenameItem> items = m_renamed;
    for (RenameItem &item : items) {
        if (back)
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
