#pragma once

#include "app/DateChangeCommands.h"
#include "naming/RenameRun.h"

#include <QList>

#include <functional>
#include <vector>

namespace orv {

class MySingleFolder;

// One rename run of the window as one undo step: undo renames the files back, redo renames them
// again, each as a journaled run of its own, so an undo survives a kill as the run did. It
// stands on the stack with the date steps, and leaves with its folders' steps as they do.
class NameChangeCommand : public DateChangeCommand
{
public:
    // Told the folders whose items' names changed, and, when a step could not move every file,
    // the problems in words.
    using Changed = std::function<void(const QList<MySingleFolder *> &folders, const QStringList &problems)>;

    // Runs the plan (checked before) and, when any file moved, records it on `stack`. False, with
    // `problem` said, when the journal could not be written: nothing was renamed.
    static bool renameAndRecord(QUndoStack &stack, std::vector<RenameItem> items, const QString &journalPath,
                                const Changed &changed, QString &problem);

    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;

private:
    NameChangeCommand(std::vector<RenameItem> renamed, QString journalPath, Changed changed);
    void apply(bool forward) override;

    std::vector<RenameItem> m_renamed;
    QString m_journalPath;
    Changed m_changed;
};

} // namespace orv
