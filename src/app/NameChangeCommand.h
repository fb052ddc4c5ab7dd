#pragma once

#include "naming/RenameRun.h"

#include <QList>
#include <QUndoCommand>

#include <functional>
#include <vector>

namespace orv {

class MySingleFolder;

// One rename run of the window as one undo step: undo renames the files back, redo renames them
// again, each as a journaled run of its own, so an undo survives a kill as the run did.
class NameChangeCommand : public QUndoCommand
{
public:
    // Told the folders whose items' names changed, and, when a step could not move every file,
    // the problems in words.
    using Changed = std::function<void(const QList<MySingleFolder *> &folders, const QStringList &problems)>;

    // Runs the plan (checked before) and, when any file moved, records it on `stack`. False, with
    // `problem` said, when the journal could not be written: nothing was renamed.
    static bool renameAndRecord(QUndoStack &stack, std::vector<RenameItem> items, const QString &journalPath,
                                const Changed &changed, QString &problem);

    void undo() override { move(true); }
    void redo() override;

private:
    NameChangeCommand(std::vector<RenameItem> renamed, QString journalPath, Changed changed);
    void move(bool back);

    std::vector<RenameItem> m_renamed;
    QString m_journalPath;
    Changed m_changed;
    bool m_done = true; // the run that made the step has renamed the files already
};

} // namespace orv
