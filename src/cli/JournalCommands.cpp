#include "cli/JournalCommands.h"

#include "formats/SaveJournal.h"

namespace orv {

namespace {

void reportLeft(const SaveJournal::Outcome &outcome, QTextStream &err, const char *what)
{
    for (const auto &[path, reason] : outcome.left)
        err << "orvelle-cli: " << path << ": " << what << ": " << reason << "\n";
}

} // namespace

void JournalCommands::finishInterruptedSave(QTextStream &err)
{
    const SaveJournal::Outcome outcome = SaveJournal::recover(SaveJournal::defaultPath());
    if (!outcome.hadRun) {
        // Damage in a finished journal is still said.
        reportLeft(outcome, err, "save journal");
        return;
    }
    err << "orvelle-cli: an interrupted save was finished: " << outcome.completed.size()
        << " file(s) completed, " << outcome.reverted.size() << " put back as they were, "
        << outcome.left.size() << " left as they are\n";
    reportLeft(outcome, err, "left as it is after the interrupted save");
    err.flush();
}

int JournalCommands::revert(const QStringList &arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (!arguments.isEmpty()) {
        err << "orvelle-cli revert: takes no arguments\nUsage: orvelle-cli revert\n";
        return 2;
    }
    const SaveJournal::Outcome outcome = SaveJournal::revert(SaveJournal::defaultPath());
    if (!outcome.hadRun) {
        err << "orvelle-cli revert: no save to revert\n";
        return 1;
    }
    for (const QString &path : outcome.reverted)
        out << path << "\treverted\n";
    reportLeft(outcome, err, "not reverted");
    return outcome.left.empty() ? 0 : 1;
}

} // namespace orv
