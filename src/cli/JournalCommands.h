#pragma once

#include <QStringList>
#include <QTextStream>

namespace orv {

// The save journal from the command line: every command first finishes a save that a kill or a
// crash interrupted, and `revert` undoes the last save.
class JournalCommands
{
public:
    // Says on `err` what finishing did; nothing when no save was interrupted.
    static void finishInterruptedSave(QTextStream &err);
    // orvelle-cli revert
    static int revert(const QStringList &arguments);
};

} // namespace orv
