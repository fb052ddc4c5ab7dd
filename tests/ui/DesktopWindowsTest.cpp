// The real window, offscreen: the error log opens from the Help menu with its two views, and a
// date preference changed in the preferences window is in force at once, for the pre-save
// summary too.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "core/LogController.h"
#include "core/NotificationHub.h"
#include "core/PreSaveSummary.h"
#include "core/SaveSettings.h"
#include "folders/MyDroppedFolders.h"
#include "ui/ErrorLogWindow.h"
#include "ui/PreferencesWindow.h"

#include <QAction>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace orv;
using namespace orv::test;

namespace {

class DesktopWindowsTest : public WindowFixture
{
protected:
    template <typename T> T &child(QWidget &parent, const QString &name) const
    {
        auto *found = parent.findChild<T *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return *found;
    }
    QAction &action(const char *name) const { return *window->findChild<QAction *>(QLatin1String(name)); }
};

} // namespace

TEST_F(DesktopWindowsTest, TheErrorLogShowsTheLastActionOrTheFileAndEmptiesTheFile)
{
    LogController &log = window->controller().log();
    log.deleteLog();
    log.setCurentError(QString());
    action("errorLogAction").trigger();
    auto &logWindow = *window->findChild<ErrorLogWindow *>();
    ASSERT_TRUE(logWindow.isVisible());
    EXPECT_FALSE(child<QPushButton>(logWindow, QStringLiteral("errorLogLastAction")).isEnabled())
        << "without errors of the last action only the file can be shown";
    EXPECT_TRUE(child<QPushButton>(logWindow, QStringLiteral("errorLogFile")).isChecked());

    log.updateLogOnDiskWithErrorLog(QStringLiteral("an earlier run\n"));
    log.setCurentError(QStringLiteral("this run's error\n"));
    action("errorLogAction").trigger();
    QPlainTextEdit &text = child<QPlainTextEdit>(logWindow, QStringLiteral("errorLogText"));
    EXPECT_EQ(text.toPlainText(), QStringLiteral("an earlier run\n"));
    child<QPushButton>(logWindow, QStringLiteral("errorLogLastAction")).click();
    EXPECT_EQ(text.toPlainText(), QStringLiteral("this run's error\n"));

    child<QPushButton>(logWindow, QStringLiteral("errorLogFile")).click();
    answers.answerNext([](QDialog &question) { clickButton(question, QStringLiteral("Yes")); });
    child<QPushButton>(logWindow, QStringLiteral("errorLogDelete")).click();
    EXPECT_TRUE(text.toPlainText().isEmpty());
    EXPECT_EQ(QFileInfo(LogController::defaultLogFilePath()).size(), 0) << "the file stays, empty";
}

TEST_F(DesktopWindowsTest, ADatePreferenceSetInTheWindowIsInForceForThePreSaveSummary)
{
    // A photo whose digitized date lies an hour after its capture date.
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.dateTimeDigitized = Stamp::text("2024:05:01 11:00:00");
    buildJpeg({.exif = tags}).write(dir.path(), QStringLiteral("IMG_1"));
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    MySingleFolder *folder = window->controller().theDataSource().droppedFolders().first();
    window->controller().dateChanges().dragChangedDates({folder}, 2 * 3600, false);

    MySinglePic &pic = *folder->sfPicDetails_fullArray.first();
    // The NEW date of a slot as the summary would show it now, in seconds.
    const auto newDate = [&](SavedDate::Slot slot) {
        for (const SavedDate &date : PreSaveSummary::datesOf(pic, SaveSettings::fromPreferences(prefs, currentInstant())))
            if (date.slot == slot && date.newDate)
                return date.newDate->secondsSinceEpoch();
        return 0.0;
    };
    const double captureNew = newDate(SavedDate::Capture);
    ASSERT_NE(captureNew, 0.0);
    EXPECT_EQ(newDate(SavedDate::Digitized), captureNew) << "by default it stays, but never before the capture date";

    int notified = 0;
    QObject context;
    NotificationHub::instance().observe(notification::prefsChanged, &context, [&] { ++notified; });
    action("preferencesAction").trigger();
    auto &prefsWindow = *window->findChild<PreferencesWindow *>();
    auto &digitized = child<QComboBox>(prefsWindow, QStringLiteral("dateChangeEXIFEXIFDigiDate"));
    EXPECT_EQ(digitized.currentData().toInt(), 1);
    const int movesAlong = digitized.findData(3);
    digitized.setCurrentIndex(movesAlong);
    Q_EMIT digitized.activated(movesAlong);

    EXPECT_EQ(prefs.integerForKey(QStringLiteral("dateChangeEXIFEXIFDigiDate")), 3);
    EXPECT_EQ(notified, 1);
    EXPECT_EQ(newDate(SavedDate::Digitized), captureNew + 3600) << "it moves along: an hour after the capture date";
}
