#include "app/QuitDecision.h"

namespace orv {

QuitAnswer quitAnswer(const QuitSituation &situation)
{
    if (situation.isStandardBlocked)
        return QuitAnswer::Refuse;
    // With no folder there is nothing to keep, whatever was asked.
    if (!situation.hasFolders)
        return QuitAnswer::QuitWithoutState;
    const bool keeping = situation.customQuitState == CustomQuitState::WithState
                         || (situation.customQuitState == CustomQuitState::Plain && situation.savingStateIsDefaultOption);
    if (keeping)
        return QuitAnswer::KeepStateAndQuit;
    return situation.hasUnsavedChanges ? QuitAnswer::Ask : QuitAnswer::QuitWithoutState;
}

} // namespace orv
