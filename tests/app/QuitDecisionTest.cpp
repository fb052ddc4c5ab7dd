// A quit keeps the working set when its command or the preference says so, asks only when
// unsaved work would otherwise be lost, and never goes ahead while a run owns the items.

#include "app/QuitDecision.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

QuitSituation working(CustomQuitState state, bool unsaved)
{
    QuitSituation situation;
    situation.customQuitState = state;
    situation.hasFolders = true;
    situation.hasUnsavedChanges = unsaved;
    return situation;
}

TEST(QuitDecision, TheQuitCommandThePreferenceAndUnsavedWorkDecide)
{
    EXPECT_EQ(quitAnswer(working(CustomQuitState::WithState, false)), QuitAnswer::KeepStateAndQuit);
    EXPECT_EQ(quitAnswer(working(CustomQuitState::WithState, true)), QuitAnswer::KeepStateAndQuit);
    EXPECT_EQ(quitAnswer(working(CustomQuitState::Plain, false)), QuitAnswer::QuitWithoutState);
    EXPECT_EQ(quitAnswer(working(CustomQuitState::Plain, true)), QuitAnswer::Ask);
    EXPECT_EQ(quitAnswer(working(CustomQuitState::WithoutState, false)), QuitAnswer::QuitWithoutState);
    EXPECT_EQ(quitAnswer(working(CustomQuitState::WithoutState, true)), QuitAnswer::Ask)
        << "unsaved dates are still asked about";

    QuitSituation byDefault = working(CustomQuitState::Plain, true);
    byDefault.savingStateIsDefaultOption = true;
    EXPECT_EQ(quitAnswer(byDefault), QuitAnswer::KeepStateAndQuit);
    byDefault.customQuitState = CustomQuitState::WithoutState;
    EXPECT_EQ(quitAnswer(byDefault), QuitAnswer::Ask) << "the command wins over the preference";
}

TEST(QuitDecision, NoFoldersQuitAtOnceAndABlockedWindowStays)
{
    QuitSituation empty = working(CustomQuitState::WithState, false);
    empty.hasFolders = false;
    EXPECT_EQ(quitAnswer(empty), QuitAnswer::QuitWithoutState) << "nothing to keep, even when asked to";
    QuitSituation blocked = working(CustomQuitState::WithState, true);
    blocked.isStandardBlocked = true;
    EXPECT_EQ(quitAnswer(blocked), QuitAnswer::Refuse);
}

TEST(QuitDecision, TheViewInFrontAtQuitIsOneNumberTakenApartAtTheNextStart)
{
    EXPECT_EQ(viewAtLaunch(203), (ViewAtQuit{3, false, true})) << "the grid inside the full-screen view over tag 3";
    EXPECT_EQ(viewAtLaunch(102), (ViewAtQuit{2, true, false}));
    EXPECT_EQ(viewAtLaunch(2), (ViewAtQuit{2, false, false}));
    EXPECT_EQ(viewAtLaunch(100), (ViewAtQuit{100, false, false})) << "100 itself is below the full-screen range";
    EXPECT_EQ(viewAtLaunch(0), ViewAtQuit{});
    EXPECT_EQ(viewAtLaunch(-5), ViewAtQuit{});
    for (const ViewAtQuit &view : {ViewAtQuit{1, false, false}, ViewAtQuit{2, true, false}, ViewAtQuit{1, false, true}})
        EXPECT_EQ(viewAtLaunch(stateAtQuitType(view)), view);
}

} // namespace
