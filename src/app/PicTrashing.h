#pragma once

#include "app/DateChangeCommands.h"

#include <QList>
#include <QStringList>

class QUndoStack;

namespace orv {

class DateChanges;
class MySinglePic;

// The question a trashing asks when a file's file system has no trash that can be written (a
// card without a .Trash-UID it may make, a read-only top): the window asks the user, tests
// answer as they need. Never a silent delete.
class TrashQuestions
{
public:
    virtual ~TrashQuestions() = default;
    // True deletes these files for good, which no undo brings back; false keeps them and their items.
    virtual bool deleteWithoutTrash(const QStringList &paths) = 0;
};

struct TrashOutcome
{
    QList<MySinglePic *> trashed; // in the trash, one undo step
    QList<MySinglePic *> deleted; // deleted for good, after the question
    QStringList problems;         // "path: reason" of each file that stayed
};

// Moves items to the desktop's trash through one TrashCommand on the one undo stack: a group's
// dependent and the sidecars go along with their master. Items whose files cannot be written
// stay, and so do those the question keeps. Refused (nothing happens) while a save runs.
class PicTrashing
{
public:
    PicTrashing(QUndoStack &stack, const DateChanges &changes, DateChangeListener listener)
        : m_stack(stack), m_changes(changes), m_listener(std::move(listener))
    {
    }

    TrashOutcome movePicsToTrash(const QList<MySinglePic *> &pics, TrashQuestions &questions);

private:
    QUndoStack &m_stack;
    const DateChanges &m_changes;
    DateChangeListener m_listener;
};

} // namespace orv
