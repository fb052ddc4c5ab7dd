// The item list's model behind its sort proxy, on folders built in memory.

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "support/QtPrinters.h"
#include "ui/PicSortProxy.h"
#include "ui/PicTableModel.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

const Instant may1 = Instant::fromUtc(2024, 5, 1);

class PicTableModelTest : public ::testing::Test
{
protected:
    PicTableModelTest()
    {
        proxy.setSourceModel(&model);
        proxy.sort(PicTableModel::DateColumn, Qt::AscendingOrder);
    }

    MySinglePic *addPic(MySingleFolder &folder, const char *name, OptionalDate date, int type = SpTypeExifOriginal)
    {
        return folder.adoptPic(std::make_unique<MySinglePic>(QLatin1String(name), &folder, type, date));
    }

    QStringList column(int column) const
    {
        QStringList cells;
        for (int row = 0; row < proxy.rowCount(); ++row)
            cells.append(proxy.index(row, column).data().toString());
        return cells;
    }

    MySingleFolder camera{QStringLiteral("/trip/camera"), false};
    MySingleFolder phone{QStringLiteral("/trip/phone"), false};
    PicTableModel model{TimeZone::utc()};
    PicSortProxy proxy;
};

} // namespace

TEST_F(PicTableModelTest, ItemsOfSeveralFoldersSortByTheDateInForceNotByFolder)
{
    addPic(camera, "camera-1.jpg", may1.addingSeconds(3600));
    addPic(camera, "camera-2.jpg", may1.addingSeconds(3 * 3600));
    addPic(phone, "phone-1.jpg", may1.addingSeconds(2 * 3600));
    addPic(phone, "phone-2.jpg", may1.addingSeconds(4 * 3600));
    model.showFolders({&camera, &phone});

    EXPECT_EQ(column(PicTableModel::NameColumn),
              (QStringList{"camera-1.jpg", "phone-1.jpg", "camera-2.jpg", "phone-2.jpg"}));
    EXPECT_EQ(column(PicTableModel::DateColumn),
              (QStringList{"2024-05-01 01:00:00 UTC", "2024-05-01 02:00:00 UTC", "2024-05-01 03:00:00 UTC",
                           "2024-05-01 04:00:00 UTC"}));

    // The phone's clock ran two and a half hours late: its pending offset moves its items.
    phone.sfDateModificationsTimeInterval = 2.5 * 3600;
    model.folderChanged(&phone);
    EXPECT_EQ(column(PicTableModel::NameColumn),
              (QStringList{"camera-1.jpg", "camera-2.jpg", "phone-1.jpg", "phone-2.jpg"}));
    EXPECT_EQ(column(PicTableModel::DateColumn).at(2), QStringLiteral("2024-05-01 04:30:00 UTC"));

    proxy.sort(PicTableModel::DateColumn, Qt::DescendingOrder);
    EXPECT_EQ(column(PicTableModel::NameColumn),
              (QStringList{"phone-2.jpg", "phone-1.jpg", "camera-2.jpg", "camera-1.jpg"}));
}

TEST_F(PicTableModelTest, AnItemWithoutDateStandsFirstAndSaysSo)
{
    addPic(camera, "dated.jpg", may1);
    addPic(camera, "drawing.gif", Instant::distantPast(), SpTypeUnsupportedPhoto);
    model.showFolders({&camera});
    EXPECT_EQ(column(PicTableModel::NameColumn), (QStringList{"drawing.gif", "dated.jpg"}));
    EXPECT_EQ(column(PicTableModel::DateColumn).first(), QStringLiteral("no date"));
    EXPECT_EQ(column(PicTableModel::SourceColumn).first(), QStringLiteral("no date (unsupported or not read)"));
}

TEST_F(PicTableModelTest, NamesSortAsAFileManagerSortsThem)
{
    for (const char *name : {"IMG_10.jpg", "img_9.jpg", "IMG_100.jpg", "IMG_1.jpg"})
        addPic(camera, name, may1);
    model.showFolders({&camera});
    proxy.sort(PicTableModel::NameColumn, Qt::AscendingOrder);
    EXPECT_EQ(column(PicTableModel::NameColumn),
              (QStringList{"IMG_1.jpg", "img_9.jpg", "IMG_10.jpg", "IMG_100.jpg"}));
}

TEST_F(PicTableModelTest, ItemsOfTheSameSecondStandInNameOrder)
{
    for (const char *name : {"burst_10.jpg", "burst_9.jpg", "burst_1.jpg"})
        addPic(camera, name, may1);
    addPic(phone, "burst_2.jpg", may1);
    model.showFolders({&camera, &phone});
    EXPECT_EQ(column(PicTableModel::NameColumn),
              (QStringList{"burst_1.jpg", "burst_2.jpg", "burst_9.jpg", "burst_10.jpg"}));
}

TEST_F(PicTableModelTest, SizesSortByPixelCountAndUnknownOnesGoLast)
{
    MySinglePic *small = addPic(camera, "small.jpg", may1);
    small->pivImageWidth = 4000;
    small->pivImageHeight = 300;
    addPic(camera, "unknown.jpg", may1);
    MySinglePic *big = addPic(camera, "big.jpg", may1);
    big->pivImageWidth = 2000;
    big->pivImageHeight = 1500;
    model.showFolders({&camera});
    proxy.sort(PicTableModel::SizeColumn, Qt::AscendingOrder);
    EXPECT_EQ(column(PicTableModel::NameColumn), (QStringList{"small.jpg", "big.jpg", "unknown.jpg"}));
    EXPECT_EQ(column(PicTableModel::SizeColumn), (QStringList{"4000 × 300", "2000 × 1500", ""}));
}

TEST_F(PicTableModelTest, CameraAndLocationAreShownAsAPhotographerReadsThem)
{
    MySinglePic *pic = addPic(camera, "pic.jpg", may1);
    pic->pivMakeModel = QStringLiteral("Pentax Corporation PENTAX K-5");
    pic->gpsLat = -33.856784;
    pic->gpsLong = 151.215297;
    addPic(camera, "bare.jpg", may1.addingSeconds(1));
    model.showFolders({&camera});
    EXPECT_EQ(column(PicTableModel::CameraColumn), (QStringList{"Pentax Corporation K-5", ""}));
    EXPECT_EQ(column(PicTableModel::LocationColumn), (QStringList{"33.85678° S, 151.21530° E", ""}));
}

TEST_F(PicTableModelTest, AFolderThatFinishesImportingJoinsTheSortedRows)
{
    addPic(camera, "camera-1.jpg", may1.addingSeconds(10));
    addPic(camera, "camera-2.jpg", may1.addingSeconds(30));
    model.showFolders({&camera});
    model.addFolder(&phone);
    EXPECT_EQ(proxy.rowCount(), 2) << "a folder still importing has no rows yet";

    addPic(phone, "phone-1.jpg", may1.addingSeconds(20));
    model.folderChanged(&phone);
    addPic(camera, "camera-3.jpg", may1);
    model.folderChanged(&camera);
    EXPECT_EQ(column(PicTableModel::NameColumn),
              (QStringList{"camera-3.jpg", "camera-1.jpg", "phone-1.jpg", "camera-2.jpg"}));

    model.removeFolder(&camera);
    EXPECT_EQ(column(PicTableModel::NameColumn), QStringList{"phone-1.jpg"});
}
