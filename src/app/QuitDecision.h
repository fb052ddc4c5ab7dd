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

// What was in front at quit, kept as one number (stateAtQuitType) for the next start: the main
// navigation's tag (1 the list, 2 the rating grid in its place), plus 100 with the full-screen
// view in front, or plus 200 with the grid inside the full-screen view.
struct ViewAtQuit
{
    int navigationTag = 0;
    bool fullScreen = false;
    bool gridInFullScreen = false;
    bool operator==(const ViewAtQuit &) const = default;
};
int stateAtQuitType(const ViewAtQuit &view);
// The number taken apart: 201 and above is the grid inside the full-screen view (less 200),
// then 101 and above the full-screen view (less 100); the rest is the tag, below 1 none.
ViewAtQuit viewAtLaunch(int stateAtQuitType);

} // namespace orv
