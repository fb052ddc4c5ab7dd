// The real window, offscreen: imports through the menu's entry and through drops, the questions
// the import asks on the way, and what the list and the sidebar then show.

#include "WindowFixture.h"

#include "core/Preferences.h"
#include "core/ImportOptions.h"
#include "folders/MySingleFolder.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"
#include "ui/FolderListModel.h"
#include "ui/ImportErrorsDialog.h"
#include "ui/MainWindow.h"
#include "ui/PicSortProxy.h"
#include "ui/PicTableModel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

class MainWindowTest : public WindowFixture
{
};

} // namespace

TEST_F(MainWindowTest, AnOpenedFolderIsListedWithItsItemsInDateOrder)
{
    writeJpeg(QStringLiteral("IMG_1"), "2024:05:01 10:00:00");
    writeJpeg(QStringLiteral("IMG_2"), "2024:05:01 09:00:00");
    writeJpeg(QStringLiteral("IMG_10"), "2024:05:01 11:30:00");
    writeJpeg(QStringLiteral("scan"));

    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));

    EXPECT_EQ(shownColumn(PicTableModel::NameColumn),
              (QStringList{"IMG_2.jpg", "IMG_1.jpg", "IMG_10.jpg", "scan.jpg"}))
        << "the file without date tags is dated by the file system: today, after 2024";
    const QStringList dates = shownColumn(PicTableModel::DateColumn);
    ASSERT_EQ(dates.size(), 4);
    EXPECT_TRUE(dates[0].startsWith(QStringLiteral("2024-05-01 09:00:00 "))) << dates[0].toStdString();
    EXPECT_TRUE(dates[1].startsWith(QStringLiteral("2024-05-01 10:00:00 "))) << dates[1].toStdString();
    EXPECT_TRUE(dates[2].startsWith(QStringLiteral("2024-05-01 11:30:00 "))) << dates[2].toStdString();
    EXPECT_EQ(shownColumn(PicTableModel::SourceColumn),
              (QStringList{"EXIF original date", "EXIF original date", "EXIF original date",
                           "file creation date (no date tags)"}));
    EXPECT_EQ(shownColumn(PicTableModel::CameraColumn).first(), QStringLiteral("Canon EOS R6"));

    const FolderListModel &folders = window->folderList();
    ASSERT_EQ(folders.rowCount(), 2) << "All Folders and the folder";
    EXPECT_EQ(folders.index(1, FolderListModel::NameColumn).data().toString(), QDir(dir.path()).dirName());
    EXPECT_EQ(folders.index(1, FolderListModel::CountColumn).data().toString(), QStringLiteral("4"));
    EXPECT_EQ(folders.index(1, FolderListModel::MediaColumn).data().toString(), QStringLiteral("Photos"));
    EXPECT_EQ(folders.index(1, FolderListModel::NameColumn).data(Qt::DecorationRole).value<QColor>().alpha(), 255)
        << "the first folder takes the palette's first colour";
}

TEST_F(MainWindowTest, DroppedFilesAreImportedWithoutTheRestOfTheirFolderOnceTheUserAgrees)
{
    prefs.setBool(QStringLiteral("isAdvanced"), false);
    const QString first = writeJpeg(QStringLiteral("first"), "2024:05:01 10:00:00");
    const QString second = writeJpeg(QStringLiteral("second"), "2024:05:01 08:00:00");
    writeJpeg(QStringLiteral("not-dropped"), "2024:05:01 09:00:00");

    answers.answerNext([](QDialog &alert) { clickButton(alert, QStringLiteral("Turn On and Import")); });
    ASSERT_TRUE(waitForImport([&] { drop({first, second}); }));

    EXPECT_EQ(answers.asked, QStringList{"QMessageBox"});
    EXPECT_EQ(shownColumn(PicTableModel::NameColumn), (QStringList{"second.jpg", "first.jpg"}));
    EXPECT_TRUE(prefs.boolForKey(QStringLiteral("isAdvanced"))) << "single files stay allowed";
}

TEST_F(MainWindowTest, DragsOfLocalFilesAreAcceptedAndOfWebAddressesRefused)
{
    QMimeData local;
    local.setUrls({QUrl::fromLocalFile(dir.path())});
    QDragEnterEvent enterLocal(QPoint(10, 10), Qt::CopyAction, &local, Qt::LeftButton, Qt::NoModifier);
    enterLocal.setAccepted(false);
    QApplication::sendEvent(window.get(), &enterLocal);
    EXPECT_TRUE(enterLocal.isAccepted());

    QMimeData web;
    web.setUrls({QUrl(QStringLiteral("https://example.com/photo.jpg"))});
    QDragEnterEvent enterWeb(QPoint(10, 10), Qt::CopyAction, &web, Qt::LeftButton, Qt::NoModifier);
    enterWeb.setAccepted(false);
    QApplication::sendEvent(window.get(), &enterWeb);
    EXPECT_FALSE(enterWeb.isAccepted());
}

TEST_F(MainWindowTest, ShiftAtTheDropImportsForTheSlideshowOnly)
{
    writeJpeg(QStringLiteral("dated"), "2024:05:01 10:00:00");
    ASSERT_TRUE(waitForImport([&] { drop({dir.path()}, Qt::ShiftModifier); }));
    EXPECT_EQ(shownColumn(PicTableModel::SourceColumn), QStringList{"no date (unsupported or not read)"})
        << "nothing is read from the files of a slideshow-only folder";
}

TEST_F(MainWindowTest, TheOptionsSheetFiltersTheImportAndCancellingItImportsNothing)
{
    prefs.setBool(QStringLiteral("isAlwaysShowOptionsDisabled"), false);
    writeJpeg(QStringLiteral("photo"), "2024:05:01 10:00:00");
    buildPng({}).write(dir.path(), QStringLiteral("drawing"));

    answers.answerNext(reject);
    window->importPaths({dir.path()});
    QApplication::processEvents();
    EXPECT_EQ(answers.asked, QStringList{"orv::TemporaryImportOptionsDialog"});
    EXPECT_EQ(window->folderList().rowCount(), 0);

    answers.answerNext([](QDialog &sheet) {
        sheet.findChild<QCheckBox *>(QStringLiteral("filterEnabled"))->setChecked(true);
        sheet.findChild<QComboBox *>(QStringLiteral("filterType"))->setCurrentIndex(0);
        sheet.findChild<QLineEdit *>(QStringLiteral("filterText"))->setText(QStringLiteral(".png"));
        sheet.accept();
    });
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    EXPECT_EQ(shownColumn(PicTableModel::NameColumn), QStringList{"drawing.png"});
}

TEST_F(MainWindowTest, EmptyDateTagsAreAskedAboutOnceAndTakeTheChosenDates)
{
    prefs.setInteger(QStringLiteral("withEmptyExifFixDate"), ImportOptions::UseFixedDate);
    prefs.setDate(QStringLiteral("prefFixDateDate"), Instant::fromUtc(2024, 7, 1, 8));
    prefs.setInteger(QStringLiteral("prefFixDateStepValue"), 10);
    prefs.setInteger(QStringLiteral("prefFixDateStepperKind"), 1);
    TiffShape blank;
    blank.dateTimeOriginal = Stamp::blank();
    for (const char *name : {"a", "b"})
        buildJpeg({.exif = blank}).write(dir.path(), QLatin1String(name));

    answers.answerNext(accept);
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));

    EXPECT_EQ(answers.asked, QStringList{"orv::EmptyTagOptionsDialog"});
    EXPECT_EQ(shownColumn(PicTableModel::SourceColumn),
              (QStringList{"fixed date (EXIF original date is empty)", "fixed date (EXIF original date is empty)"}));
    const QStringList dates = shownColumn(PicTableModel::DateColumn);
    ASSERT_EQ(dates.size(), 2);
    const QString first = dates[0], second = dates[1];
    EXPECT_NE(first, second);
    EXPECT_EQ(first.mid(14, 5), QStringLiteral("00:00")) << first.toStdString();
    EXPECT_EQ(second.mid(14, 5), QStringLiteral("10:00")) << "ten minutes later: " << second.toStdString();
}

TEST_F(MainWindowTest, ProblemsOfAnImportAreReportedOnceAtItsEnd)
{
    writeJpeg(QStringLiteral("good"), "2024:05:01 10:00:00");
    QFile empty(dir.filePath(QStringLiteral("broken.jpg")));
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.close();

    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));

    const QList<ImportErrorsDialog *> reports = window->findChildren<ImportErrorsDialog *>();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_TRUE(reports.first()->isVisible());
    EXPECT_TRUE(reports.first()->reportText().contains(dir.filePath(QStringLiteral("broken.jpg"))));
    EXPECT_EQ(shownColumn(PicTableModel::NameColumn).size(), 2) << "the empty file is still imported, dated by the file system";
}

TEST_F(MainWindowTest, StopDropsTheFoldersStillWaiting)
{
    QDir(dir.path()).mkdir(QStringLiteral("a-first"));
    QDir(dir.path()).mkdir(QStringLiteral("b-waiting"));
    TiffShape blank;
    blank.dateTimeOriginal = Stamp::blank();
    buildJpeg({.exif = blank}).write(dir.filePath(QStringLiteral("a-first")), QStringLiteral("a"));
    buildJpeg({}).write(dir.filePath(QStringLiteral("b-waiting")), QStringLiteral("b"));

    // The scan of the first folder waits for the empty-tag question; the user stops meanwhile.
    answers.answerNext([this](QDialog &question) {
        for (QPushButton *button : window->findChildren<QPushButton *>())
            if (button->text() == QLatin1String("Stop"))
                button->click();
        question.accept();
    });
    ASSERT_TRUE(waitForImport([&] {
        window->importPaths({dir.filePath(QStringLiteral("a-first")), dir.filePath(QStringLiteral("b-waiting"))});
    }));

    QStringList listed;
    for (const MySingleFolder *folder : window->folderList().folders())
        listed.append(folder->sfFolder);
    EXPECT_FALSE(listed.contains(QStringLiteral("b-waiting"))) << "never started, so left out";
    EXPECT_FALSE(shownColumn(PicTableModel::NameColumn).contains(QStringLiteral("b.jpg")));
}
