// The summary before a save, in the real window: each row tells what the save writes into the
// file, also the dates that do not simply move with the item, and what it tells is what the
// save then writes; going back selects the items chosen in it.

#include "WindowFixture.h"

#include "core/MySinglePic.h"
#include "support/Exiftool.h"
#include "timeline/MyTimelinesController.h"
#include "ui/PicTableModel.h"
#include "ui/TimelinePane.h"

#include <QAction>
#include <QSpinBox>
#include <QTest>
#include <QTableView>
#include <QTreeWidget>

using namespace orv;
using namespace orv::test;

namespace {

struct Row
{
    QString now, after, why;
};

class PreSaveSummaryTest : public WindowFixture
{
protected:
    void SetUp() override
    {
        prefs.setBool(QStringLiteral("isPreSaveSummaryOnlyOnProblems"), false);
        // The modify date is half an hour after the capture; the GPS fix two hours before it in
        // UTC, as a camera two hours ahead of UTC records it.
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        tags.dateTime = Stamp::text("2024:05:01 10:30:00");
        tags.gps = GpsShape::fixAt(48.8584, 2.2945, "2024:05:01 08:00:00");
        photo = buildJpeg({.exif = tags}).write(dir.path(), QStringLiteral("IMG_1"));
        writeJpeg(QStringLiteral("IMG_2"), "2024:05:01 12:30:00");
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
        window->findChild<QSpinBox *>(QStringLiteral("offsetHours"))->setValue(1);
    }

    // Saves, letting answer handle the summary; the rows of the photo's dates by name.
    std::map<QString, Row> saveWith(const std::function<void(QTreeWidget &, QDialog &)> &answer)
    {
        std::map<QString, Row> rows;
        answers.answerNext([&](QDialog &summary) {
            auto &table = *summary.findChild<QTreeWidget *>(QStringLiteral("preSaveItems"));
            const QList<QTreeWidgetItem *> found = table.findItems(QStringLiteral("IMG_1.jpg"), Qt::MatchExactly);
            if (found.size() == 1)
                for (int i = 0; i < found[0]->childCount(); ++i) {
                    const QTreeWidgetItem *date = found[0]->child(i);
                    rows[date->text(0)] = {date->text(1), date->text(2), date->text(3)};
                }
            answer(table, summary);
        });
        QSignalSpy finished(window.get(), &MainWindow::saveFinished);
        window->save();
        EXPECT_TRUE(finished.wait(20000));
        return rows;
    }

    // "2024-05-01 11:00:00 UTC" as exiftool writes it: "2024:05:01 11:00:00".
    static QString asExifStamp(const QString &shown) { return shown.left(19).replace(u'-', u':'); }

    QString photo;
};

} // namespace

TEST_F(PreSaveSummaryTest, TheRowsSayWhatTheSaveWritesAndCancelSelectsTheItemsChosen)
{
    const QString before = exiftoolTags(photo).string(QStringLiteral("EXIF:ModifyDate"));
    std::map<QString, Row> cancelled = saveWith([](QTreeWidget &table, QDialog &summary) {
        table.setCurrentItem(table.findItems(QStringLiteral("IMG_1.jpg"), Qt::MatchExactly).value(0));
        clickButton(summary, QStringLiteral("Cancel"));
    });

    ASSERT_TRUE(cancelled.count("Capture date") && cancelled.count("Modify date") && cancelled.count("GPS time (UTC)"));
    EXPECT_TRUE(cancelled.count("File date")) << "the file's own date is set too";
    const Row &capture = cancelled["Capture date"];
    const Row &modify = cancelled["Modify date"];
    const Row &gps = cancelled["GPS time (UTC)"];
    EXPECT_TRUE(capture.why.isEmpty()) << "the capture date moves with the item";
    EXPECT_EQ(modify.after, capture.after) << "the older modify date takes the new capture date";
    EXPECT_TRUE(modify.why.contains(QStringLiteral("older"))) << modify.why.toStdString();
    EXPECT_EQ(gps.now.left(19), QStringLiteral("2024-05-01 08:00:00"));
    EXPECT_EQ(gps.after.left(19), QStringLiteral("2024-05-01 09:00:00"));
    EXPECT_TRUE(gps.why.contains(QStringLiteral("camera clock"))) << gps.why.toStdString();

    // Back in the window: nothing written, the photo chosen in the summary selected.
    EXPECT_EQ(exiftoolTags(photo).string(QStringLiteral("EXIF:ModifyDate")), before);
    const MySinglePic *selected = window->timeline().controller().theTimelineView_1().picSelection();
    ASSERT_NE(selected, nullptr);
    EXPECT_EQ(selected->spName, QStringLiteral("IMG_1.jpg"));
    const QModelIndexList rows = window->findChild<QTableView *>()->selectionModel()->selectedRows(PicTableModel::NameColumn);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].data().toString(), QStringLiteral("IMG_1.jpg"));

    // Saved at once, while the cancelled run still waits for its deletion: the file holds what
    // the summary said.
    saveWith([](QTreeWidget &, QDialog &summary) { summary.accept(); });
    const ExiftoolTags written = exiftoolTags(photo);
    EXPECT_EQ(written.string(QStringLiteral("EXIF:DateTimeOriginal")), asExifStamp(capture.after));
    EXPECT_EQ(written.string(QStringLiteral("EXIF:ModifyDate")), asExifStamp(modify.after));
    EXPECT_EQ(written.string(QStringLiteral("EXIF:GPSDateStamp")) + u' ' + written.string(QStringLiteral("EXIF:GPSTimeStamp")),
              asExifStamp(gps.after));
}
