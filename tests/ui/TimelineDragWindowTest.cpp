// Two cameras 1 h 23 min apart, imported into the real window, offscreen: in "All Folders" the
// real mouse drags a photo of the late camera onto the matching photo of the other, the label at
// the pointer tells the new date and offset while the button is down, the strip shows the late
// folder among the other's photos before anything changes, and the release sets the offset.

#include "WindowFixture.h"
#include "support/QtPrinters.h"

#include "app/TimelineDrop.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"
#include "ui/TimelinePane.h"

#include <QDir>
#include <QLabel>
#include <QTest>

namespace orv::test {
namespace {

class TimelineDragWindowTest : public WindowFixture
{
protected:
    // The camera's photos in a folder of its own, named by their stamps.
    QString camera(const QString &name, const QList<const char *> &stamps)
    {
        const QString folder = dir.filePath(name);
        QDir().mkpath(folder);
        for (qsizetype n = 0; n < stamps.size(); ++n) {
            TiffShape tags;
            tags.make = QByteArray("Canon");
            tags.model = QByteArray("Canon EOS R6");
            tags.dateTimeOriginal = Stamp::text(stamps[n]);
            buildJpeg({.exif = tags}).write(folder, QStringLiteral("%1_%2").arg(name).arg(n + 1));
        }
        return folder;
    }
};

TEST_F(TimelineDragWindowTest, InAllFoldersADragOntoTheOtherCameraSetsTheOffsetAndTellsItAtThePointer)
{
    const QString early = camera(QStringLiteral("A"), {"2024:05:01 10:00:00", "2024:05:01 10:05:00", "2024:05:01 10:10:00"});
    const QString late = camera(QStringLiteral("B"), {"2024:05:01 11:28:00", "2024:05:01 11:33:00"});
    window->resize(1400, 800);
    ASSERT_TRUE(waitForImport([&] { window->importPaths({early, late}); }));

    MyTimelineView &view = window->timeline().mainView();
    TimelineStrip &strip = view.strip();
    ASSERT_EQ(strip.theSource().size(), 5);
    ASSERT_TRUE(strip.raisedFolders().isEmpty()) << "All Folders: every folder stands raised";
    MySinglePic *a2 = strip.theSource().at(1);
    MySinglePic *b1 = strip.theSource().at(3);
    MySingleFolder *lateFolder = MySingleFolder::of(*b1);
    ASSERT_EQ(b1->spName, QStringLiteral("B_1.jpg"));
    ASSERT_NE(MySingleFolder::of(*a2), lateFolder);

    QWidget *viewport = view.viewport();
    const auto *label = viewport->findChild<QLabel *>(QStringLiteral("dragPointerLabel"));
    ASSERT_TRUE(label);
    const QPoint from = view.thumbRectInViewport(3).center().toPoint();
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    QTest::mouseMove(viewport, from + QPoint(10, 0));
    // Over its own folder the drag says why it cannot drop there.
    EXPECT_TRUE(label->isVisible());
    EXPECT_EQ(label->text(), dropRefusalText(DropRefusal::OwnFolder));

    // The right half of A_2: one second after it.
    const QRectF target = view.thumbRectInViewport(1);
    const QPoint onRightHalf(int(target.center().x() + target.width() / 6), int(target.center().y()));
    QTest::mouseMove(viewport, onRightHalf);
    EXPECT_TRUE(label->text().contains(QStringLiteral("10:05:01")));
    EXPECT_TRUE(label->text().contains(QStringLiteral("Folder offset −1 h 22 min 59 s")));
    EXPECT_TRUE(label->text().contains(QStringLiteral("Right half: 1 s after A_2.jpg")));

    // After a moment of calm the strip shows B among A, the model untouched, A_2 under the pointer.
    QTest::qWait(150);
    ASSERT_TRUE(strip.hasTempSource());
    EXPECT_EQ(strip.indexOf(b1), 2);
    EXPECT_EQ(lateFolder->sfDateModificationsTimeInterval, 0);
    EXPECT_EQ(view.picAtPoint(onRightHalf), a2);

    QTest::mouseMove(viewport, onRightHalf + QPoint(1, 0));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, onRightHalf + QPoint(1, 0));
    EXPECT_FALSE(label->isVisible());
    EXPECT_EQ(lateFolder->sfDateModificationsTimeInterval, -(3600 + 22 * 60 + 59));
    EXPECT_EQ(b1->spDateTimeModified()->secondsSince(*a2->spDateTimeModified()), 1);
    EXPECT_EQ(strip.theSource().indexOf(b1), 2);
    EXPECT_FALSE(strip.hasTempSource());
}

} // namespace
} // namespace orv::test
