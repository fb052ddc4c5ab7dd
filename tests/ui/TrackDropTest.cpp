// A GPX file dropped on the window: its track is linked to the folders on show, the list shows
// the places before any save, and one undo takes them all back. The track list shows the track
// and lets the folders go of it, or closes items to it, each one undo step.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "ui/PicTableModel.h"
#include "ui/TrackListView.h"

#include <QFile>
#include <QPushButton>
#include <QTableView>
#include <QTreeWidget>
#include <QStatusBar>
#include <QTest>
#include <QUndoStack>

using namespace orv;
using namespace orv::test;

namespace {

class TrackDropTest : public WindowFixture
{
protected:
    QString photoAt(const char *name, const char *utcStamp)
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text(utcStamp);
        tags.offsetTimeOriginal = Stamp::text("+00:00");
        return buildJpeg({.exif = tags}).write(dir.path(), QString::fromLatin1(name));
    }

    QString writeGpx(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }

    QTemporaryDir tracks;
};

} // namespace

TEST_F(TrackDropTest, ADroppedTrackPlacesTheItemsOnShowBeforeTheSaveAndUndoTakesThemBack)
{
    photoAt("a_on", "2024:05:01 10:00:30");
    photoAt("b_off", "2024:05:01 12:00:00");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    const QString gpx = writeGpx(
        tracks.filePath(QStringLiteral("hike.gpx")),
        "<gpx version=\"1.1\"><trk><trkseg>"
        "<trkpt lat=\"46.0\" lon=\"14.0\"><time>2024-05-01T10:00:00Z</time></trkpt>"
        "<trkpt lat=\"46.01\" lon=\"14.0\"><time>2024-05-01T10:01:00Z</time></trkpt></trkseg></trk></gpx>");
    const QString broken = writeGpx(tracks.filePath(QStringLiteral("broken.gpx")), "<gpx><trk><trkseg>");

    drop({gpx, broken});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shownColumn(PicTableModel::LocationColumn).first().isEmpty(); }, 10000));
    const QStringList places = shownColumn(PicTableModel::LocationColumn);
    EXPECT_TRUE(places[0].startsWith(QStringLiteral("46"))) << places[0].toStdString();
    EXPECT_TRUE(places[1].isEmpty()) << "outside the track: no place";
    const QString message = window->statusBar()->currentMessage();
    EXPECT_TRUE(message.contains(QStringLiteral("1 item(s) placed"))) << message.toStdString();
    EXPECT_TRUE(message.contains(broken + QStringLiteral(": broken off"))) << message.toStdString();
    EXPECT_TRUE(window->isWindowModified()) << "a place waits for the save";

    QUndoStack &undo = window->controller().uManager();
    ASSERT_EQ(undo.count(), 1);
    undo.undo();
    EXPECT_TRUE(shownColumn(PicTableModel::LocationColumn).first().isEmpty());
}

TEST_F(TrackDropTest, TheTrackListShowsEachTrackWithWhatItPlacedAndItsButtonsAreUndoSteps)
{
    photoAt("a_on", "2024:05:01 10:00:30");
    photoAt("b_on", "2024:05:01 10:00:40");
    photoAt("c_off", "2024:05:01 12:00:00");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    const QString gpx = writeGpx(
        tracks.filePath(QStringLiteral("hike.gpx")),
        "<gpx version=\"1.1\"><trk><name>Hike</name><trkseg>"
        "<trkpt lat=\"46.0\" lon=\"14.0\"><time>2024-05-01T10:00:00Z</time></trkpt>"
        "<trkpt lat=\"46.01\" lon=\"14.0\"><time>2024-05-01T10:01:00Z</time></trkpt></trkseg></trk>"
        "<trk><name>Lost</name><trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg></trk></gpx>");
    auto *list = window->findChild<QTreeWidget *>(QStringLiteral("trackList"));
    ASSERT_NE(list, nullptr);
    drop({gpx});
    ASSERT_TRUE(QTest::qWaitFor([&] { return list->topLevelItemCount() == 2; }, 10000));
    const auto cell = [list](int row, int column) { return list->topLevelItem(row)->text(column).toStdString(); };
    EXPECT_EQ(cell(0, TrackListView::NameColumn), "Hike") << "usable tracks first";
    EXPECT_FALSE(cell(0, TrackListView::StartColumn).empty());
    EXPECT_EQ(cell(0, TrackListView::PointsColumn), "2");
    EXPECT_EQ(cell(0, TrackListView::PlacedColumn), "2");
    EXPECT_EQ(cell(0, TrackListView::FoldersColumn), "1");
    EXPECT_FALSE(cell(0, TrackListView::ZoneColumn).empty()) << "where the track began";
    EXPECT_EQ(cell(1, TrackListView::NameColumn), "Lost");
    EXPECT_EQ(cell(1, TrackListView::StateColumn), "its points have no times");
    EXPECT_EQ(cell(1, TrackListView::PlacedColumn), "0");

    QUndoStack &undo = window->controller().uManager();
    const int linked = undo.count();
    auto *unlink = window->findChild<QPushButton *>(QStringLiteral("unlinkTracksButton"));
    ASSERT_NE(unlink, nullptr);
    EXPECT_FALSE(unlink->isEnabled()) << "no track chosen";
    list->topLevelItem(0)->setSelected(true);
    ASSERT_TRUE(unlink->isEnabled());
    EXPECT_FALSE(window->findChild<QPushButton *>(QStringLiteral("useTrackZoneButton"))->isEnabled())
        << "the camera wrote its offset: its clock needs no zone";
    unlink->click();
    EXPECT_EQ(undo.count(), linked + 1);
    EXPECT_EQ(cell(0, TrackListView::PlacedColumn), "0");
    EXPECT_EQ(cell(0, TrackListView::FoldersColumn), "0");
    EXPECT_TRUE(shownColumn(PicTableModel::LocationColumn).first().isEmpty());
    EXPECT_TRUE(list->topLevelItem(0)->isSelected()) << "the chosen track stays chosen";
    undo.undo();
    EXPECT_EQ(cell(0, TrackListView::PlacedColumn), "2");

    // The chosen item is closed to tracks and gets back what it had: nothing.
    QTableView &pics = *window->findChild<QTableView *>();
    pics.selectionModel()->select(pics.model()->index(0, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    window->findChild<QPushButton *>(QStringLiteral("closeItemsToTracksButton"))->click();
    EXPECT_EQ(undo.count(), linked + 1);
    EXPECT_EQ(cell(0, TrackListView::PlacedColumn), "1");
    undo.undo();
    EXPECT_EQ(cell(0, TrackListView::PlacedColumn), "2");
}
