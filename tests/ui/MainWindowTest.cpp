// The real window, offscreen: imports through the menu's entry and through drops, then what
// the list shows.

#include "app/Preferences.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"
#include "ui/FolderListModel.h"
#include "ui/MainWindow.h"
#include "ui/PicSortProxy.h"
#include "ui/PicTableModel.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

class MainWindowTest : public ::testing::Test
{
protected:
    void SetUp() override { window.show(); }

    // A JPEG whose EXIF original date is the given stamp; without one it has no date tags.
    QString writeJpeg(const QString &baseName, const char *originalStamp = nullptr)
    {
        TiffSpec tags;
        tags.make = QByteArray("Canon");
        tags.model = QByteArray("Canon EOS R6");
        if (originalStamp)
            tags.dateTimeOriginal = Stamp::text(originalStamp);
        return buildJpeg({.exif = tags}).write(dir.path(), baseName);
    }

    bool waitForImport(const std::function<void()> &start)
    {
        QSignalSpy finished(&window, &MainWindow::importsFinished);
        start();
        return finished.wait(20000);
    }

    QStringList shownColumn(int column) const
    {
        const PicSortProxy &rows = window.sortedPics();
        QStringList cells;
        for (int row = 0; row < rows.rowCount(); ++row)
            cells.append(rows.index(row, column).data().toString());
        return cells;
    }

    QTemporaryDir dir;
    Preferences prefs{QString()};
    MainWindow window{prefs};
};

} // namespace

TEST_F(MainWindowTest, AnOpenedFolderIsListedWithItsItemsInDateOrder)
{
    writeJpeg(QStringLiteral("IMG_1"), "2024:05:01 10:00:00");
    writeJpeg(QStringLiteral("IMG_2"), "2024:05:01 09:00:00");
    writeJpeg(QStringLiteral("IMG_10"), "2024:05:01 11:30:00");
    writeJpeg(QStringLiteral("scan"));

    ASSERT_TRUE(waitForImport([&] { window.importPaths({dir.path()}); }));

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

    const FolderListModel &folders = window.folderList();
    ASSERT_EQ(folders.rowCount(), 2) << "All Folders and the folder";
    EXPECT_EQ(folders.index(1, FolderListModel::NameColumn).data().toString(), QDir(dir.path()).dirName());
    EXPECT_EQ(folders.index(1, FolderListModel::CountColumn).data().toString(), QStringLiteral("4"));
}

TEST_F(MainWindowTest, DroppedFilesAreImportedWithoutTheRestOfTheirFolder)
{
    const QString first = writeJpeg(QStringLiteral("first"), "2024:05:01 10:00:00");
    const QString second = writeJpeg(QStringLiteral("second"), "2024:05:01 08:00:00");
    writeJpeg(QStringLiteral("not-dropped"), "2024:05:01 09:00:00");

    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(first), QUrl::fromLocalFile(second)});
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    enter.setAccepted(false);
    QApplication::sendEvent(&window, &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    ASSERT_TRUE(waitForImport([&] { QApplication::sendEvent(&window, &drop); }));

    EXPECT_EQ(shownColumn(PicTableModel::NameColumn), (QStringList{"second.jpg", "first.jpg"}));
}

TEST_F(MainWindowTest, ADragOfWebAddressesIsRefused)
{
    QMimeData mime;
    mime.setUrls({QUrl(QStringLiteral("https://example.com/photo.jpg"))});
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    enter.setAccepted(false);
    QApplication::sendEvent(&window, &enter);
    EXPECT_FALSE(enter.isAccepted());
}
