#pragma once

#include "app/DateChangeCommands.h"

#include <QList>
#include <QStringList>

class QUndoStack;

namespace orv {

class DateChanges;
class FolderChangeVerifier;
class MySingleFolder;
class MySinglePic;

struct MoveOutcome
{
    QList<MySinglePic *> moved; // in the folder taken, one undo step
    QStringList problems;       // "path: reason" of each item that stayed
};

// Moves items with their files into another imported folder, through one MoveCommand on the one
// undo stack: a group's dependent and the sidecars go along with their master, under the same
// base name, which takes " 2", " 3"... when the folder taken holds it already. An item with
// unsaved changes stays (its pending dates belong to its folder's offsets and zones), and so
// does one whose files cannot be moved. Refused (nothing happens) while a save runs.
class PicMoving
{
public:
    PicMoving(QUndoStack &stack, const DateChanges &changes, FolderChangeVerifier &verifier,
              DateChangeListener listener)
        : m_stack(stack), m_changes(changes), m_verifier(verifier), m_listener(std::move(listener))
    {
    }

    MoveOutcome movePics(const QList<MySinglePic *> &pics, MySingleFolder &target, const QString &journalPath);

private:
    QUndoStack &m_stack;
    const DateChanges &m_changes;
    FolderChangeVerifier &m_verifier;
    DateChangeListener m_listener;
};

} // namespace orv
