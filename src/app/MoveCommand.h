#pragma once

#include "app/DateChangeCommands.h"
#include "naming/RenameRun.h"

#include <QStringList>

#include <vector>

namespace orv {

class FolderChangeVerifier;

// Items moved to another imported folder, one user event: their files (a group's dependent and
// the sidecars along) went there by a journaled run, and the items with them. Undo moves the
// files back by a run of its own and the items to their old places; redo moves them again. A
// step that survives a kill is finished or rolled back by the journal's recovery, as a rename
// is. What a step could not move stays where it is, named in problems().
class MoveCommand : public DateChangeCommand
{
public:
    struct Entry
    {
        RenameItem files; // the names in the folder left and in the folder taken
        MySingleFolder *from = nullptr;
        MySingleFolder *to = nullptr;
        qsizetype index = 0; // in the visible list of the folder left, before it left
    };
    MoveCommand(std::vector<Entry> entries, QString journalPath, FolderChangeVerifier &verifier,
                DateChangeListener listener);

    static constexpr int commandId = 31;
    int id() const override { return commandId; }
    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;

    // The items where the last step meant them to be.
    QList<MySinglePic *> movedPics() const;
    // Forgets the items the last step could not move: after the first step, the command stands
    // for the items that moved.
    void dropUnmoved();
    // What the last step could not do, one line per item, or why the journal refused it.
    const QStringList &problems() const { return m_problems; }

private:
    void apply(bool forward) override;

    std::vector<Entry> m_entries;
    QString m_journalPath;
    FolderChangeVerifier &m_verifier;
    QStringList m_problems;
    QList<MySinglePic *> m_moved;
};

} // namespace orv
