// The date field with real keys, offscreen: what typing, the element keys and undo do to the
// date it holds, as the wall clock of Berlin.

#include "support/QtPrinters.h"
#include "support/Zones.h"
#include "ui/OrvelleDatePicker.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace orv;

namespace {

// Berlin is UTC+2 in summer: 2008-10-22 16:29:49 there is 14:29:49 UTC.
class DatePickerTest : public ::testing::Test
{
protected:
    DatePickerTest()
    {
        picker.setDateValue(Instant::fromUtc(2024, 7, 1, 8, 0, 5)); // 10:00:05 in Berlin
        picker.show();
        picker.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&picker));
        picker.setFocus(Qt::TabFocusReason); // entered with the keyboard: the whole date selected
    }

    OrvelleDatePicker picker{test::zone("Europe/Berlin")};
};

TEST_F(DatePickerTest, AWholeDateTypedOverTheSelectedOneGivesExactlyThatDate)
{
    EXPECT_EQ(picker.text(), QStringLiteral("2024-07-01 10:00:05"));
    ASSERT_TRUE(picker.editor().isAllSelected());
    QSignalSpy changes(&picker, &OrvelleDatePicker::dateValueChanged);
    QTest::keyClicks(&picker, QStringLiteral("2008-10-22 16:29:49"));
    EXPECT_EQ(picker.dateValue(), Instant::fromUtc(2008, 10, 22, 14, 29, 49));
    EXPECT_EQ(picker.text(), QStringLiteral("2008-10-22 16:29:49"));
    EXPECT_GE(changes.size(), 1) << "the timelines follow while it is typed";
    EXPECT_EQ(changes.last()[0].value<Instant>(), picker.dateValue());

    // From the 31st, a whole date in February still comes through: the day follows the month.
    picker.setDateValue(Instant::fromUtc(2024, 1, 31, 11));
    QTest::keyClick(&picker, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&picker, QStringLiteral("2023-02-14 09:05:00"));
    EXPECT_EQ(picker.text(), QStringLiteral("2023-02-14 09:05:00"));
    // One step for the whole date.
    QTest::keyClick(&picker, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-01-31 12:00:00"));
}

TEST_F(DatePickerTest, ElementKeysChangeOneElementAndUndoTakesBackOneElementAtATime)
{
    QTest::keyClick(&picker, Qt::Key_Right); // month
    QTest::keyClick(&picker, Qt::Key_Up);
    QTest::keyClick(&picker, Qt::Key_Up);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-09-01 10:00:05"));
    QTest::keyClick(&picker, Qt::Key_Right);
    QTest::keyClick(&picker, Qt::Key_Right); // hour
    QTest::keyClick(&picker, Qt::Key_Down);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-09-01 09:00:05"));
    QTest::keyClick(&picker, Qt::Key_Right); // minute: digits type it
    QTest::keyClicks(&picker, QStringLiteral("42"));
    EXPECT_EQ(picker.text(), QStringLiteral("2024-09-01 09:42:05"));

    // Second 59 wraps within its minute; with Alt it carries into the next.
    QTest::keyClick(&picker, Qt::Key_Right);
    QTest::keyClicks(&picker, QStringLiteral("59"));
    QTest::keyClick(&picker, Qt::Key_Up);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-09-01 09:42:00"));
    QTest::keyClick(&picker, Qt::Key_Down);
    QTest::keyClick(&picker, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-09-01 09:43:00"));

    EXPECT_EQ(picker.editor().undoElementName(), QStringLiteral("Second"));
    QTest::keyClick(&picker, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-09-01 09:42:05"));
    QTest::keyClick(&picker, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-09-01 09:00:05"));
    QTest::keyClick(&picker, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-09-01 10:00:05"));
    QTest::keyClick(&picker, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-07-01 10:00:05"));
    EXPECT_FALSE(picker.editor().canUndo());
    QTest::keyClick(&picker, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(picker.text(), QStringLiteral("2024-09-01 10:00:05"));
}

TEST_F(DatePickerTest, RefusesWhatAMonthOrTheBoundsDoNotHoldAndKeepsTheDate)
{
    // On 31 January, typing February as the month is refused: the day would change.
    picker.setDateValue(Instant::fromUtc(2024, 1, 31, 11));
    QTest::keyClick(&picker, Qt::Key_Right);
    QTest::keyClicks(&picker, QStringLiteral("02"));
    EXPECT_EQ(picker.text(), QStringLiteral("2024-01-31 12:00:00"));

    // A lone 0 waits for its next digit; a second later the day is as it was.
    QTest::keyClick(&picker, Qt::Key_Right);
    QTest::keyClicks(&picker, QStringLiteral("0"));
    QTest::qWait(1200);
    EXPECT_FALSE(picker.editor().hasRunningEntry());
    EXPECT_EQ(picker.text(), QStringLiteral("2024-01-31 12:00:00"));

    // At the lower bound Down keeps the date.
    picker.setMinDate(Instant::fromUtc(2024, 1, 31, 11));
    QTest::keyClick(&picker, Qt::Key_Down);
    EXPECT_EQ(picker.dateValue(), Instant::fromUtc(2024, 1, 31, 11));

    // 02:30 does not exist on the night Berlin's clocks spring forward: it lands beside the gap.
    picker.setDateValue(Instant::fromUtc(2024, 3, 31, 0, 30)); // 01:30 CET
    QTest::keyClick(&picker, Qt::Key_Right); // from the day to the hour
    QTest::keyClicks(&picker, QStringLiteral("02"));
    EXPECT_EQ(picker.dateValue(), Instant::fromUtc(2024, 3, 31, 1, 30));
    EXPECT_EQ(picker.text(), QStringLiteral("2024-03-31 03:30:00"));
}

} // namespace
