// A GPX file dropped on the window: its track is linked to the folders on show, the list shows
// the places before any save, and one undo takes them all back.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "ui/PicTableModel.h"

#include <QFile>
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
