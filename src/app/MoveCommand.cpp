#include "app/MoveCommand.h"

#include "app/TrashCommand.h"
#include "core/MySinglePic.h"
#include "folders/FolderChangeVerifier.h"
#include "folders/MySingleFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace orv {

MoveCommand::MoveCommand(std::vector<Entry> entries, QString journalPath, FolderChangeVerifier &verifier,
                         DateChangeListener listener)
    : DateChangeCommand(QCoreApplication::translate("MoveCommand", "Move %n Item(s)", nullptr, int(entries.size())),
                        std::move(listener)),
      m_entries(std::move(entries)), m_journalPath(std::move(journalPath)), m_verifier(verifier)
{
}

void MoveCommand::apply(bool forward)
{
    m_problems.clear();
    m_moved.clear();
    std::vector<RenameItem> items;
    QList<MySingleFolder *> touched;
    for (const Entry &entry : m_entries) {
        MySingleFolder *leaving = forward ? entry.from : entry.to;
        MySingleFolder *taking = forward ? entry.to : entry.from;
        RenameItem item = entry.files;
        item.folder = QFileInfo(leaving->sfFolderPath).absoluteFilePath();
        item.toFolder = QFileInfo(taking->sfFolderPath).absoluteFilePath();
        if (!forward)
            std::swap(item.from, item.to);
        item.problem.clear();
        item.renamed = false;
        items.push_back(std::move(item));
        for (MySingleFolder *folder : {leaving, taking}) {
            if (!touched.contains(folder))
                touched.append(folder);
        }
    }
    // Our own moves are no outside change.
    for (MySingleFolder *folder : std::as_const(touched))
        m_verifier.willModifyFolder(*folder);
    QString journalProblem;
    const bool ran = RenameRun::execute(items, m_journalPath, journalProblem);
    // Back in the reverse order of going out, so that every index taken stays true.
    for (std::size_t n = 0; ran && n < items.size(); ++n) {
        const std::size_t i = forward ? n : items.size() - 1 - n;
        Entry &entry = m_entries[i];
        const RenameItem &item = items[i];
        MySinglePic &pic = *entry.files.pic;
        if (!item.renamed) {
            m_problems << QDir(item.folder).filePath(item.from.value(0)) + QLatin1String(": ") + item.problem;
            continue;
        }
        if (forward) {
            entry.index = entry.from->sfPicDetails_fullArray.indexOf(&pic);
            entry.from->handOverPic(pic, *entry.to, entry.to->sfPicDetails_fullArray.size());
        } else {
            entry.to->handOverPic(pic, *entry.from, entry.index);
        }
        // The verification proves the file afresh in its new folder.
        pic.lastCheckedAt.reset();
        if (pic.bundleDependentImage)
            pic.bundleDependentImage->lastCheckedAt.reset();
        m_moved.append(&pic);
    }
    if (!ran)
        m_problems << journalProblem;
    for (MySingleFolder *folder : std::as_const(touched)) {
        folder->validateTZCUnsaved();
        m_verifier.didModifyFolder(*folder);
    }
    TrashCommand::recountFolders(touched);
    if (!m_moved.isEmpty() && m_listener.datesChanged)
        m_listener.datesChanged(touched);
}

std::unique_ptr<DateChangeCommand> MoveCommand::withoutFolder(const MySingleFolder *folder) const
{
    std::vector<Entry> kept;
    std::copy_if(m_entries.begin(), m_entries.end(), std::back_inserter(kept),
                 [folder](const Entry &entry) { return entry.from != folder && entry.to != folder; });
    if (kept.empty())
        return nullptr;
    return std::make_unique<MoveCommand>(std::move(kept), m_journalPath, m_verifier, m_listener);
}

QList<MySingleFolder *> MoveCommand::folders() const
{
    QList<MySingleFolder *> folders;
    for (const Entry &entry : m_entries) {
        for (MySingleFolder *folder : {entry.from, entry.to}) {
            if (!folders.contains(folder))
                folders.append(folder);
        }
    }
    return folders;
}

void MoveCommand::dropUnmoved()
{
    std::erase_if(m_entries, [this](const Entry &entry) { return !m_moved.contains(entry.files.pic); });
    setText(QCoreApplication::translate("MoveCommand", "Move %n Item(s)", nullptr, int(m_entries.size())));
}

QList<MySinglePic *> MoveCommand::movedPics() const
{
    return m_moved;
}

} // namespace orv
