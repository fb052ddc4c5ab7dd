#pragma once

namespace orv {

// Whether a quit may go ahead and what it leaves for the next start. The two quit commands set
// customQuitState for the one quit that follows; a plain quit keeps the working set only when
// the preference savingStateIsDefaultOption says so, and otherwise asks while there is unsaved
// work.
enum class CustomQuitState { Plain = 0, WithoutState = 1, WithState = 2 };

enum class QuitAnswer {
    Refuse,           // a run owns the working set: nothing changes
    KeepStateAndQuit, // the working set is written for the next start
    QuitWithoutState, // nothing is kept for the next start
    Ask,              // unsaved work would be lost: the user decides
};

struct QuitSituation
{
    CustomQuitState customQuitState = CustomQuitState::Plain;
    bool savingStateIsDefaultOption = false;
    bool isStandardBlocked = false;
    bool hasFolders = false;
    bool hasUnsavedChanges = false;
};

QuitAnswer quitAnswer(const QuitSituation &situation);

} // namespace orv
