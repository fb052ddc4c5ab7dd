#include "core/PreferenceMigrations.h"

#include "PreferencesFixture.h"
#include "core/NotificationHub.h"

#include <QCborArray>
#include <QRect>
#include <QSize>
#include <functional>

namespace orv {
namespace {

const QString versionKey = QStringLiteral("prefVersion");
const QString frameKey = QStringLiteral("NSWindow Frame orvelle7");
const QString fixDateKey = QStringLiteral("prefFixDateDate");

// Answers like a user at a window, and notes what it was asked, in order.
class FakeHost : public MigrationHost
{
public:
    void applyFirstLaunchSettings() override { calls << QStringLiteral("firstLaunchSettings"); }
    int mainScreenHeight() const override { return screenHeight; }
    void reselectRenameTemplate() override { calls << QStringLiteral("reselectTemplate"); }
    bool reportBrokenBookmarks() override
    {
        calls << QStringLiteral("brokenBookmarks");
        return wantsBookmarkCheckAgain;
    }

    QStringList calls;
    int screenHeight = 1080;
    bool wantsBookmarkCheckAgain = false;
};

// A launch as far as settings go.
void launch(Preferences &prefs, FakeHost &host)
{
    prefs.applyStartClamps(Instant(1e9));
    runFirstMigrations(prefs);
    runRemainingMigrations(prefs, host);
}

QByteArray bookmarks(const QList<QCborArray> &entries)
{
    QCborArray list;
    for (const QCborArray &entry : entries)
        list.append(entry);
    return QCborValue(list).toCbor();
}

void storeOldMainWindowFrames(Preferences &prefs, const QRect &window, const QRect &screen)
{
    prefs.setValue(QStringLiteral("motherOfWorkaroundsNewMainWindowFrame"), window);
    prefs.setValue(QStringLiteral("motherOfWorkaroundsNewMainWindowScreenFrame"), screen);
}

struct Step
{
    const char *name;
    int lastAffectedGeneration;
    std::function<void(Preferences &)> arrange;
    std::function<bool(Preferences &, const FakeHost &)> hasRun;
};

const Step steps[] = {
    {"mirrored selection mode", 809,
     [](Preferences &p) { p.setInteger(QStringLiteral("timelinesSelectionsMode"), 3); },
     [](Preferences &p, const FakeHost &) {
         return p.integerForKey(QStringLiteral("timelinesSelectionsMode_mirrored")) == 3;
     }},
    {"main window frame", 699,
     [](Preferences &p) {
         storeOldMainWindowFrames(p, QRect(10, 20, 800, 600), QRect(0, 0, 1920, 1080));
     },
     [](Preferences &p, const FakeHost &) { return p.hasValueForKey(frameKey); }},
    {"sheet sizes", 799,
     [](Preferences &p) {
         p.setValue(QStringLiteral("NSWindow Frame PreSaveAlert"),
                    QStringLiteral("100 200 640 480 0 0 1920 1080 "));
     },
     [](Preferences &p, const FakeHost &) {
         return p.valueForKey(QStringLiteral("psaSheetSizeStd")).toSize() == QSize(640, 480) &&
                p.valueForKey(QStringLiteral("psaSheetSizeFS")).toSize() == QSize(640, 480);
     }},
    {"rename template reselection", 24, [](Preferences &) {},
     [](Preferences &, const FakeHost &h) {
         return h.calls.contains(QStringLiteral("reselectTemplate"));
     }},
    {"bookmark check", 36,
     [](Preferences &p) {
         p.setValue(QStringLiteral("advancedBookmarks"),
                    bookmarks({{QStringLiteral("path"), 1, 2}, {QStringLiteral("path"), 1}}));
     },
     [](Preferences &, const FakeHost &h) {
         return h.calls.contains(QStringLiteral("brokenBookmarks"));
     }},
    {"old window geometry", 49,
     [](Preferences &p) { p.setDouble(QStringLiteral("mainSplitViewHeightTop"), 401.6); },
     [](Preferences &p, const FakeHost &) {
         return p.doubleForKey(QStringLiteral("mainWindowDividerPos_STD")) == 402.0;
     }},
    {"whole-second fix date", 500, [](Preferences &p) { p.setDate(fixDateKey, Instant(1000.6)); },
     [](Preferences &p, const FakeHost &) { return p.dateForKey(fixDateKey) == Instant(1001.0); }},
};

TEST(PreferenceMigrations, EachStepRunsExactlyForTheGenerationsItConcerns)
{
    for (const Step &step : steps) {
        for (const int generation :
             {0, 1, step.lastAffectedGeneration, step.lastAffectedGeneration + 1, 810, 900}) {
            Preferences prefs{QString()};
            FakeHost host;
            prefs.setInteger(versionKey, generation);
            step.arrange(prefs);
            launch(prefs, host);
            const bool concerned = generation >= 1 && generation <= step.lastAffectedGeneration;
            EXPECT_EQ(step.hasRun(prefs, host), concerned) << step.name << " at " << generation;
            EXPECT_EQ(prefs.integerForKey(versionKey), std::max(generation, 810))
                << step.name << " at " << generation;
        }
    }
}

TEST(PreferenceMigrations, FirstLaunchAppliesShippedSettingsAndSizesPopoversByTheScreen)
{
    for (const int height : {1000, 999}) {
        Preferences prefs{QString()};
        FakeHost host;
        host.screenHeight = height;
        launch(prefs, host);
        EXPECT_EQ(host.calls, QStringList{QStringLiteral("firstLaunchSettings")});
        EXPECT_EQ(prefs.boolForKey(QStringLiteral("usePopoverAltSize")), height >= 1000);
        EXPECT_EQ(prefs.boolForKey(QStringLiteral("usePopoverAltSizeFullscreen")), height >= 1000);
    }
}

TEST(PreferenceMigrations, MainWindowFrameIsTakenWholeAndOnlyIntoAnEmptyKey)
{
    const QRect window(10, 20, 800, 600);
    const QRect screen(0, 0, 1920, 1080);
    Preferences prefs{QString()};
    prefs.setInteger(versionKey, 600);
    storeOldMainWindowFrames(prefs, window, QRect());
    runFirstMigrations(prefs);
    EXPECT_FALSE(prefs.hasValueForKey(frameKey)) << "an empty rectangle isn't taken";

    storeOldMainWindowFrames(prefs, window, screen);
    runFirstMigrations(prefs);
    EXPECT_EQ(prefs.stringForKey(frameKey), QStringLiteral("10 20 800 600 0 0 1920 1080"));

    storeOldMainWindowFrames(prefs, QRect(1, 1, 50, 50), screen);
    runFirstMigrations(prefs);
    EXPECT_EQ(prefs.stringForKey(frameKey), QStringLiteral("10 20 800 600 0 0 1920 1080"));
}

TEST(PreferenceMigrations, OldGeometryIsTakenOnlyWhenPositive)
{
    Preferences prefs{QString()};
    prefs.setInteger(versionKey, 40);
    prefs.setDouble(QStringLiteral("timelineViewHeightFullscreen"), 0.0);
    prefs.setDouble(QStringLiteral("topFrameInFullscreenMode"), -5.0);
    prefs.setDouble(QStringLiteral("timelineViewHeight"), 300.0);
    FakeHost host;
    launch(prefs, host);
    EXPECT_EQ(prefs.integerForKey(QStringLiteral("timelineHeight_FUS")), 150);
    EXPECT_EQ(prefs.integerForKey(QStringLiteral("mainWindowDividerPos_FUS")), 373);
    EXPECT_EQ(prefs.integerForKey(QStringLiteral("timelineHeight_STD")), 300)
        << "clamped only at the next start";
}

class BookmarkCheck : public test::PreferencesFixture
{
};

TEST_F(BookmarkCheck, AskingAgainLeavesGeneration36AfterTheOtherStepsRan)
{
    prefs().setInteger(versionKey, 20);
    prefs().setValue(QStringLiteral("advancedBookmarks"), bookmarks({{QStringLiteral("path")}}));
    prefs().setDouble(QStringLiteral("timelineViewHeight"), 160.0);
    FakeHost host;
    host.wantsBookmarkCheckAgain = true;
    launch(prefs(), host);
    EXPECT_EQ(host.calls,
              (QStringList{QStringLiteral("reselectTemplate"), QStringLiteral("brokenBookmarks")}));
    EXPECT_EQ(prefs().integerForKey(QStringLiteral("timelineHeight_STD")), 160);

    restart();
    EXPECT_EQ(prefs().integerForKey(versionKey), 36);
    host.calls.clear();
    host.wantsBookmarkCheckAgain = false;
    launch(prefs(), host);
    EXPECT_EQ(host.calls, QStringList{QStringLiteral("brokenBookmarks")});
    EXPECT_EQ(prefs().integerForKey(versionKey), 810);
}

TEST(PreferenceMigrations, PostNoPrefsChanged)
{
    QObject context;
    int posted = 0;
    NotificationHub::instance().observe(notification::prefsChanged, &context,
                                        [&posted] { ++posted; });
    for (const int generation : {0, 20}) {
        Preferences prefs{QString()};
        prefs.setInteger(versionKey, generation);
        prefs.setDouble(QStringLiteral("timelineViewHeight"), 160.0);
        FakeHost host;
        launch(prefs, host);
    }
    EXPECT_EQ(posted, 0);
}

} // namespace
} // namespace orv
