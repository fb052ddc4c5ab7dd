#include "PreferencesFixture.h"
#include "core/NotificationHub.h"

#include <QCborArray>
#include <QSize>
#include <atomic>
#include <thread>
#include <vector>

namespace orv {
namespace {

using test::PreferencesFixture;

const QString slideDuration = QStringLiteral("slideDuration");
const QString timelineHeight = QStringLiteral("timelineHeight_STD");

TEST_F(PreferencesFixture, TypedGettersParseTextTheWayTheDefaultsAreWritten)
{
    EXPECT_TRUE(prefs().boolForKey(QStringLiteral("createFileGroups")));
    EXPECT_EQ(prefs().integerForKey(slideDuration), 5);
    EXPECT_DOUBLE_EQ(prefs().doubleForKey(QStringLiteral("mainWindowDividerPos9_STD")), 286.0);

    struct Case
    {
        const char *text;
        bool asBool;
        qint64 asInteger;
        double asDouble;
    };
    const Case cases[] = {
        {"1", true, 1, 1.0},    {"0", false, 0, 0.0},     {" 12 ", true, 12, 12.0},
        {"2.9", true, 2, 2.9},  {"-2.9", true, -2, -2.9}, {"0.0", false, 0, 0.0},
        {"true", true, 0, 0.0}, {"YES", true, 0, 0.0},    {"false", false, 0, 0.0},
        {"abc", false, 0, 0.0}, {"", false, 0, 0.0},
    };
    for (const Case &c : cases) {
        prefs().setValue(slideDuration, QString::fromLatin1(c.text));
        EXPECT_EQ(prefs().boolForKey(slideDuration), c.asBool) << c.text;
        EXPECT_EQ(prefs().integerForKey(slideDuration), c.asInteger) << c.text;
        EXPECT_DOUBLE_EQ(prefs().doubleForKey(slideDuration), c.asDouble) << c.text;
    }
}

TEST_F(PreferencesFixture, TypedValuesSurviveARestart)
{
    const QCborArray archive{QStringLiteral("X-1"), 2};
    prefs().setBool(QStringLiteral("isAdvanced"), true);
    prefs().setBool(QStringLiteral("createFileGroups"), false);
    prefs().setInteger(slideDuration, -7);
    prefs().setDouble(QStringLiteral("loupeSize"), 212.25);
    prefs().setDate(QStringLiteral("prefFixDateDate"), Instant(1700000000.5));
    prefs().setValue(QStringLiteral("additionalText"), QStringLiteral("Ærø 1"));
    prefs().setArchive(QStringLiteral("specValues2"), archive);
    prefs().setValue(QStringLiteral("tzcSheetSizeStd"), QSize(640, 480));
    restart();

    ASSERT_EQ(prefs().valueForKey(slideDuration).typeId(), QMetaType::QString)
        << "numbers come back as the file's text";
    EXPECT_TRUE(prefs().boolForKey(QStringLiteral("isAdvanced")));
    EXPECT_FALSE(prefs().boolForKey(QStringLiteral("createFileGroups")));
    EXPECT_EQ(prefs().integerForKey(slideDuration), -7);
    EXPECT_DOUBLE_EQ(prefs().doubleForKey(QStringLiteral("loupeSize")), 212.25);
    EXPECT_EQ(prefs().dateForKey(QStringLiteral("prefFixDateDate")), Instant(1700000000.5));
    EXPECT_EQ(prefs().stringForKey(QStringLiteral("additionalText")), QStringLiteral("Ærø 1"));
    EXPECT_EQ(prefs().archiveForKey(QStringLiteral("specValues2")), archive);
    EXPECT_EQ(prefs().valueForKey(QStringLiteral("tzcSheetSizeStd")).toSize(), QSize(640, 480));
}

TEST_F(PreferencesFixture, AbsentValuesFallBackToTheDefaultOrToNothing)
{
    const QString noDefault = QStringLiteral("stateAtQuitType");
    EXPECT_FALSE(prefs().hasValueForKey(noDefault));
    EXPECT_FALSE(prefs().dateForKey(noDefault).has_value());

    prefs().setInteger(slideDuration, 9);
    prefs().setInteger(noDefault, 203);
    prefs().removeValueForKey(QString()); // must not wipe the store
    EXPECT_EQ(prefs().integerForKey(slideDuration), 9);
    prefs().removeValueForKey(slideDuration);
    prefs().removeValueForKey(noDefault);
    restart();
    EXPECT_EQ(prefs().integerForKey(slideDuration), 5);
    EXPECT_FALSE(prefs().hasValueForKey(noDefault));

    prefs().setValue(QStringLiteral("folderColors_7"), QByteArray("\xff\x00garbage", 9));
    EXPECT_TRUE(prefs().archiveForKey(QStringLiteral("folderColors_7")).isUndefined());
}

TEST(PreferencesInMemory, EachStoreKeepsItsOwnValues)
{
    Preferences first{QString()};
    Preferences second{QString()};
    first.setInteger(slideDuration, 9);
    first.sync();
    EXPECT_EQ(first.integerForKey(slideDuration), 9);
    EXPECT_EQ(second.integerForKey(slideDuration), 5);
}

TEST_F(PreferencesFixture, OverridesAndWritesToThemNeverReachDisk)
{
    prefs().setInteger(slideDuration, 8);
    prefs().overrideForThisRun(slideDuration, 30);
    prefs().overrideForThisRun(QStringLiteral("isAdvanced"), true);
    EXPECT_EQ(prefs().integerForKey(slideDuration), 30);
    EXPECT_TRUE(prefs().boolForKey(QStringLiteral("isAdvanced")));
    prefs().setInteger(slideDuration, 31);
    EXPECT_EQ(prefs().integerForKey(slideDuration), 31);
    prefs().removeValueForKey(slideDuration);
    EXPECT_EQ(prefs().integerForKey(slideDuration), 5) << "the default, not the stored 8";
    prefs().setInteger(QStringLiteral("loupeSize"), 250);

    EXPECT_FALSE(fileContents().contains("isAdvanced"));
    restart();
    EXPECT_EQ(prefs().integerForKey(slideDuration), 8);
    EXPECT_FALSE(prefs().boolForKey(QStringLiteral("isAdvanced")));
    EXPECT_EQ(prefs().integerForKey(QStringLiteral("loupeSize")), 250) << "not overridden";
    prefs().overrideForThisRun(QStringLiteral("loupeSize"), QVariant());
    EXPECT_EQ(prefs().integerForKey(QStringLiteral("loupeSize")), 200);
}

// Records the single-key signal and the "prefsChanged" postings.
class ChangeRecorder
{
public:
    explicit ChangeRecorder(Preferences &prefs)
    {
        QObject::connect(&prefs, &Preferences::valueChanged, &m_context,
                         [this](const QString &key) { changedKeys << key; });
        NotificationHub::instance().observe(notification::prefsChanged, &m_context,
                                            [this] { ++prefsChangedCount; });
    }

    QStringList changedKeys;
    int prefsChangedCount = 0;

private:
    QObject m_context;
};

TEST_F(PreferencesFixture, ValueChangedFiresOnlyWhenTheValueInForceChanges)
{
    prefs().setBool(QStringLiteral("isAdvanced"), true);
    prefs().setDouble(QStringLiteral("loupeSize"), 212.25);
    restart();
    ChangeRecorder recorder(prefs());
    prefs().setBool(QStringLiteral("isAdvanced"), true);          // as read back from the file
    prefs().setDouble(QStringLiteral("loupeSize"), 212.25);       // as read back from the file
    prefs().setDouble(timelineHeight, 128.0);                     // the default "128"
    prefs().setBool(QStringLiteral("createFileGroups"), true);    // the default "1"
    prefs().removeValueForKey(QStringLiteral("stateAtQuitType")); // never set
    prefs().setInteger(slideDuration, 6);
    prefs().setInteger(slideDuration, 6);
    prefs().overrideForThisRun(timelineHeight, 140);
    EXPECT_EQ(recorder.changedKeys, (QStringList{slideDuration, timelineHeight}));
}

TEST_F(PreferencesFixture, PrefsChangedIsPostedOnlyForANotifyingChangeOfTheValue)
{
    ChangeRecorder recorder(prefs());
    prefs().setValueNotifying(QStringLiteral("highlightLivePhotoComps"), false);
    EXPECT_EQ(recorder.prefsChangedCount, 1);
    EXPECT_FALSE(prefs().boolForKey(QStringLiteral("highlightLivePhotoComps")));

    prefs().setValueNotifying(QStringLiteral("highlightLivePhotoComps"), false);
    prefs().setValueNotifying(slideDuration, QStringLiteral("5"));
    prefs().setInteger(slideDuration, 12);
    prefs().overrideForThisRun(QStringLiteral("isAdvanced"), true);
    prefs().removeValueForKey(slideDuration);
    Preferences nextStart{settingsPath()};
    nextStart.applyStartClamps(Instant(1e9));
    EXPECT_EQ(recorder.prefsChangedCount, 1);
}

TEST_F(PreferencesFixture, StartClampsTimelineHeightsAndGivesTheFixDateAValue)
{
    const QString fixDate = QStringLiteral("prefFixDateDate");
    prefs().setInteger(timelineHeight, 300);
    prefs().setInteger(QStringLiteral("timelineHeight_FUS"), 20);
    restart();
    prefs().applyStartClamps(Instant(1e9));
    restart();
    EXPECT_EQ(prefs().integerForKey(timelineHeight), 222);
    EXPECT_EQ(prefs().integerForKey(QStringLiteral("timelineHeight_FUS")), 82);
    EXPECT_EQ(prefs().dateForKey(fixDate), Instant(1e9));

    prefs().setInteger(QStringLiteral("timelineHeight_FUS"), 222);
    prefs().removeValueForKey(timelineHeight);
    prefs().applyStartClamps(Instant(2e9));
    EXPECT_EQ(prefs().integerForKey(timelineHeight), 128);
    EXPECT_EQ(prefs().integerForKey(QStringLiteral("timelineHeight_FUS")), 222);
    EXPECT_EQ(prefs().dateForKey(fixDate), Instant(1e9));
}

TEST_F(PreferencesFixture, ReadsFromManyThreadsSeeWholeValues)
{
    std::atomic<bool> stop = false;
    std::atomic<int> torn = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!stop) {
                const qint64 value = prefs().integerForKey(slideDuration);
                if (value != 5 && value != 1000)
                    ++torn;
            }
        });
    }
    for (int i = 0; i < 2000; ++i)
        prefs().setInteger(slideDuration, i % 2 ? 5 : 1000);
    stop = true;
    for (std::thread &reader : readers)
        reader.join();
    EXPECT_EQ(torn, 0);
}

} // namespace
} // namespace orv
