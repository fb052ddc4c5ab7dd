// The dialogs that answer the import's questions, and their way across threads.

#include "app/Preferences.h"
#include "folders/MySingleFolder.h"
#include "support/QtPrinters.h"
#include "ui/DateSequenceFields.h"
#include "ui/EmptyTagOptionsDialog.h"
#include "ui/ImportSheets.h"
#include "ui/InstantEdit.h"

#include <QApplication>
#include <QCheckBox>
#include <QRadioButton>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <thread>

using namespace orv;

namespace {

TimeZone berlin()
{
    const std::optional<TimeZone> zone = TimeZone::fromName(QStringLiteral("Europe/Berlin"));
    if (!zone)
        throw std::runtime_error("Europe/Berlin missing from the tz database");
    return *zone;
}

ImportOptions fixedDatesPreset()
{
    ImportOptions preset;
    preset.withEmptyExifFixDate = ImportOptions::UseFixedDate;
    preset.prefFixDateDate = Instant::fromUtc(2024, 7, 1, 8);
    preset.prefFixDateStepValue = 5;
    preset.prefFixDateStepperKind = 1;
    preset.createFileGroups = false;
    return preset;
}

// Accepts the next dialog that opens modally, as a user clicking its default button would, and
// tells which class it was and over which window it opened.
struct SeenDialog
{
    QString className;
    QWidget *parent = nullptr;
};

void acceptNextModalDialog(SeenDialog *seen)
{
    auto *poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, seen] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            *seen = {QString::fromLatin1(dialog->metaObject()->className()), dialog->parentWidget()};
            dialog->accept();
            poll->deleteLater();
        }
    });
    poll->start(10);
}

} // namespace

TEST(InstantEdit, ShowsTheZonesWallClockAndGivesBackTheSameInstant)
{
    InstantEdit edit(berlin());
    const Instant summer = Instant::fromUtc(2024, 7, 1, 8, 0, 5);
    edit.setInstant(summer);
    EXPECT_EQ(edit.text(), QStringLiteral("2024-07-01  10:00:05"));
    EXPECT_EQ(edit.instant(), summer);

    // 02:30 does not exist on the night clocks spring forward; the zone moves it past the gap.
    edit.setDateTime(QDateTime(QDate(2024, 3, 31), QTime(2, 30), Qt::UTC));
    EXPECT_EQ(edit.instant(), Instant::fromUtc(2024, 3, 31, 1, 30));
}

TEST(EmptyTagOptionsDialog, KeepsTheFoldersOtherOptionsAndReturnsTheChosenDates)
{
    EmptyTagOptionsDialog dialog(QStringLiteral("Trip"), fixedDatesPreset(), berlin());
    ImportOptions answer = dialog.answer();
    EXPECT_EQ(answer.withEmptyExifFixDate, ImportOptions::UseFixedDate);
    EXPECT_EQ(answer.prefFixDateDate, Instant::fromUtc(2024, 7, 1, 8));
    EXPECT_EQ(answer.stepInSeconds(), 300.0);
    EXPECT_FALSE(answer.createFileGroups) << "what the question is not about stays as it was";
    EXPECT_FALSE(dialog.dontAskAgain());

    dialog.findChild<DateSequenceFields *>()->setValues(Instant::fromUtc(2023, 1, 1, 12), 2, DateSequenceFields::Hours);
    answer = dialog.answer();
    EXPECT_EQ(answer.prefFixDateDate, Instant::fromUtc(2023, 1, 1, 12));
    EXPECT_EQ(answer.stepInSeconds(), 7200.0);
}

TEST(EmptyTagOptionsDialog, NotAskingAgainOnlyEverMeansTheFileDate)
{
    EmptyTagOptionsDialog dialog(QStringLiteral("Trip"), fixedDatesPreset(), berlin());
    QRadioButton *fileDate = nullptr;
    for (QRadioButton *button : dialog.findChildren<QRadioButton *>())
        if (!button->isChecked())
            fileDate = button;
    ASSERT_TRUE(fileDate);
    auto *dontAsk = dialog.findChild<QCheckBox *>();
    EXPECT_FALSE(dontAsk->isEnabled()) << "offered only beside the file date";

    fileDate->setChecked(true);
    ASSERT_TRUE(dontAsk->isEnabled());
    dontAsk->setChecked(true);
    EXPECT_EQ(dialog.answer().withEmptyExifFixDate, ImportOptions::UseFileDate);
    EXPECT_TRUE(dialog.dontAskAgain());
}

TEST(ImportSheets, AScanThreadWaitsForTheAnswerGivenOnTheMainThread)
{
    Preferences prefs{QString()};
    prefs.setDate(QStringLiteral("prefFixDateDate"), Instant::fromUtc(2024, 7, 1, 8));
    prefs.setInteger(QStringLiteral("prefFixDateStepperKind"), 1);
    prefs.setInteger(QStringLiteral("withEmptyExifFixDate"), ImportOptions::UseFixedDate);
    QWidget window;
    ImportSheets sheets(&window, prefs);
    MySingleFolder folder(QStringLiteral("/trip/camera"), false);
    folder.perFolderImportOptions.withEmptyExifFixDate = ImportOptions::UseFixedDate;

    SeenDialog seen;
    acceptNextModalDialog(&seen);
    std::optional<ImportOptions> answer;
    std::thread scan([&] { answer = sheets.emptyTagOptions(folder); });
    while (!answer)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    scan.join();

    EXPECT_EQ(seen.className, QStringLiteral("orv::EmptyTagOptionsDialog"));
    EXPECT_EQ(seen.parent, &window);
    EXPECT_EQ(answer->withEmptyExifFixDate, ImportOptions::UseFixedDate);
    EXPECT_EQ(answer->prefFixDateDate, Instant::fromUtc(2024, 7, 1, 8)) << "preset from the preferences";
    EXPECT_EQ(answer->stepInSeconds(), 600.0) << "10 minutes, the registered step";
}

TEST(ImportSheets, AfterDontAskAgainTheFileDateIsTakenWithoutADialog)
{
    Preferences prefs{QString()};
    prefs.setBool(QStringLiteral("skipEmptyTagImportOptions"), true);
    ImportSheets sheets(nullptr, prefs);
    MySingleFolder folder(QStringLiteral("/trip/camera"), false);
    EXPECT_EQ(sheets.emptyTagOptions(folder).withEmptyExifFixDate, ImportOptions::UseFileDate);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}
