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

int stateAtQuitType(const ViewAtQuit &view)
{
    return view.navigationTag + (view.gridInFullScreen ? 200 : view.fullScreen ? 100 : 0);
}

ViewAtQuit viewAtLaunch(int stateAtQuitType)
{
    ViewAtQuit view;
    int rest = stateAtQuitType;
    if (rest >= 201) {
        view.gridInFullScreen = true;
        rest -= 200;
    }
    if (rest >= 101) {
        view.fullScreen = true;
        rest -= 100;
    }
    view.navigationTag = rest >= 1 ? rest : 0;
    return view;
}

} // namespace orv
