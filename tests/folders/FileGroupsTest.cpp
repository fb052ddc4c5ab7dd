#include "core/MySinglePic.h"
#include "folders/FileGroups.h"
#include "folders/MySingleFolder.h"
#include "support/MediaFileBuilder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

using namespace orv;
using namespace orv::test;

namespace {

const Instant noon = Instant::fromUtc(2024, 5, 1, 12, 0, 0);

// Items staged as a scan leaves them, before the folder publishes them.
struct StagedFolder
{
    MySingleFolder folder{QStringLiteral("/photos/trip"), false};
    std::vector<std::unique_ptr<MySinglePic>> staged;

    QList<MySinglePic *> stagedPics() const
    {
        QList<MySinglePic *> pics;
        for (const auto &pic : staged)
            pics.append(pic.get());
        return pics;
    }
    FileGroups groups() { return FileGroups(folder, stagedPics()); }

    MySinglePic &stage(const QString &name, FileFormatType format, int type = SpTypeExifOriginal,
                       const QString &makeModel = QStringLiteral("Canon EOS R6"))
    {
        auto pic = std::make_unique<MySinglePic>(name, &folder, type, noon);
        pic->fileFormatType = format;
        pic->pivMakeModel = makeModel;
        pic->isPossibleBundlePic = format == RawFormat || format == QuickTimeMovieFormat;
        staged.push_back(std::move(pic));
        return *staged.back();
    }

    // A Live Photo half whose stamps say the given UTC time, without identifiers.
    MySinglePic &stampedStill(const QString &name, const QByteArray &exifStamp)
    {
        MySinglePic &still = stage(name, JpegFormat);
        still.singlePicAttributes.ExifDateTimeOriginal = StampRecord{exifStamp + '\0', 100};
        return still;
    }
    MySinglePic &stampedMovie(const QString &name, const QByteArray &metaStamp)
    {
        MySinglePic &movie = stage(name, QuickTimeMovieFormat, SpTypeMdta);
        movie.singlePicAttributes.QTMetaDate = MovieStampRecord{metaStamp, 200};
        return movie;
    }

    void publish()
    {
        for (auto &pic : staged)
            folder.adoptPic(std::move(pic));
        staged.clear();
    }

    void pair(const QSet<QString> &newNames)
    {
        groups().checkForPossibleBundles(newNames);
    }
    void pairAll()
    {
        QSet<QString> names;
        for (const auto &pic : staged)
            names.insert(pic->spName);
        pair(names);
    }
};

} // namespace

TEST(FileGroupsRawJpeg, MakerModelTypeAndSaveErrorsDecideAndDatesDoNot)
{
    StagedFolder f;
    MySinglePic &raw = f.stage("A.CR2", RawFormat);
    MySinglePic &jpeg = f.stage("A.JPG", JpegFormat);
    EXPECT_TRUE(FileGroups::isRaw(raw, jpeg, false));
    jpeg.spDateTimeOriginal = noon.addingSeconds(5 * 3600.0);
    EXPECT_TRUE(FileGroups::isRaw(raw, jpeg, false)) << "a RAW+JPEG pair compares no dates";

    jpeg.pivMakeModel = QStringLiteral("Nikon Z 6");
    EXPECT_FALSE(FileGroups::isRaw(raw, jpeg, false));
    EXPECT_TRUE(FileGroups::isRaw(raw, jpeg, true)) << "slideshow-only folders pair on names";
    jpeg.pivMakeModel = QStringLiteral("-");
    EXPECT_TRUE(FileGroups::isRaw(raw, jpeg, false)) << "no maker text keeps no pair apart";

    jpeg.saveErrorType = SaveErrorTime;
    EXPECT_FALSE(FileGroups::isRaw(raw, jpeg, false));
    jpeg.saveErrorType = 0;
    raw.spType = SpTypeNoTagsFileDate;
    EXPECT_FALSE(FileGroups::isRaw(raw, jpeg, false));
    raw.spType = SpTypeExifOriginal;
    jpeg.fileFormatType = HeicFormat;
    EXPECT_FALSE(FileGroups::isRaw(raw, jpeg, false));
}

TEST(FileGroupsLivePhoto, IdentifiersPairUnlessTheMovieHasNoRealDateAndStampsPairAcrossADaylightSavingHour)
{
    StagedFolder f;
    MySinglePic &still = f.stage("B.HEIC", HeicFormat);
    MySinglePic &movie = f.stage("B.MOV", QuickTimeMovieFormat, SpTypeMvhdCreation);
    still.UUID = movie.UUID = QStringLiteral("5F1A-77");
    EXPECT_TRUE(FileGroups::isMovie(movie, still, false));
    for (const int type : {SpTypeMovieFileDate, SpTypeRiff}) {
        movie.spType = type;
        EXPECT_FALSE(FileGroups::isMovie(movie, still, false)) << type;
    }
    movie.spType = SpTypeMdta;
    movie.UUID = QStringLiteral("other");
    EXPECT_FALSE(FileGroups::isMovie(movie, still, false));

    // 3,570 s apart, on either side of a full hour in the small hours: a clock that switched.
    MySinglePic &dstStill = f.stampedStill("C.JPG", "2024:03:31 02:59:40");
    MySinglePic &dstMovie = f.stampedMovie("C.MOV", "2024-03-31T02:00:10+0100");
    EXPECT_TRUE(FileGroups::isMovie(dstMovie, dstStill, false));
    MySinglePic &dayStill = f.stampedStill("D.JPG", "2024:03:31 07:59:40");
    MySinglePic &dayMovie = f.stampedMovie("D.MOV", "2024-03-31T07:00:10+0100");
    EXPECT_FALSE(FileGroups::isMovie(dayMovie, dayStill, false));
    MySinglePic &nearStill = f.stampedStill("E.JPG", "2024:07:01 15:00:00");
    MySinglePic &nearMovie = f.stampedMovie("E.MOV", "2024-07-01T15:04:59+0200");
    EXPECT_TRUE(FileGroups::isMovie(nearMovie, nearStill, false));
    nearMovie.pivMakeModel = QStringLiteral("Apple iPhone 12");
    EXPECT_FALSE(FileGroups::isMovie(nearMovie, nearStill, false));

    EXPECT_TRUE(MySingleFolder::isBundlingAllowedForUtcDates(Instant::fromUtc(2024, 3, 31, 1, 0, 0),
                                                             Instant::fromUtc(2024, 3, 31, 1, 59, 10)));
    EXPECT_FALSE(MySingleFolder::isBundlingAllowedForUtcDates(noon, noon.addingSeconds(3901.0)));
}

TEST(FileGroupsPairing, ARawTakesItsJpegOnceAndTheSameWayEveryTimeAndAMovieFindingItTakenStaysAlone)
{
    StagedFolder f;
    f.folder.perFolderImportOptions.harmonizingRawJpgsTypeDefault = 2;
    MySinglePic &movie = f.stage("IMG_1.MOV", QuickTimeMovieFormat, SpTypeMdta);
    MySinglePic &lower = f.stage("IMG_1.jpg", JpegFormat);
    MySinglePic &upper = f.stage("IMG_1.JPG", JpegFormat);
    MySinglePic &raw = f.stage("IMG_1.CR2", RawFormat);
    MySinglePic &otherCase = f.stage("img_2.JPG", JpegFormat);
    MySinglePic &otherRaw = f.stage("IMG_2.CR2", RawFormat);
    f.pairAll();

    EXPECT_EQ(raw.bundleDependentImage, &upper);
    EXPECT_EQ(upper.bundleMasterImage, &raw);
    EXPECT_EQ(lower.bundleMasterImage, nullptr);
    EXPECT_EQ(movie.bundleMasterImage, nullptr);
    EXPECT_EQ(otherRaw.bundleDependentImage, nullptr) << "base names compare with case";
    EXPECT_EQ(otherCase.bundleMasterImage, nullptr);
    EXPECT_EQ(raw.spSidecarExtensions, QStringList{"JPG"});
    EXPECT_EQ(raw.spSidecarFiles(), QStringList{"IMG_1.JPG"});
    EXPECT_EQ(f.folder.bundleDependentsRawAndJPG, QList<MySinglePic *>{&upper});
    EXPECT_EQ(f.folder.harmonizingRawJpgsType, 2) << "fixed when the first group forms";
    EXPECT_EQ(f.folder.sortLPsByMovModifier, -1);
}

TEST(FileGroupsPairing, TwoFilesImportedApartStayApartAndANewOnePairsWithAnOldOne)
{
    StagedFolder f;
    MySinglePic &oldRaw = f.stage("IMG_3.NEF", RawFormat);
    f.stage("IMG_3.JPG", JpegFormat);
    MySinglePic &oldJpeg = f.stage("IMG_4.JPG", JpegFormat);
    oldJpeg.isKeeper = true;
    f.pair({});
    EXPECT_EQ(oldRaw.bundleDependentImage, nullptr);
    f.publish();
    f.folder.quickSelection.insert(&oldJpeg);

    MySinglePic &newRaw = f.stage("IMG_4.NEF", RawFormat);
    f.pair({"IMG_4.NEF"});
    EXPECT_EQ(oldRaw.bundleDependentImage, nullptr);
    EXPECT_EQ(newRaw.bundleDependentImage, &oldJpeg);
    EXPECT_TRUE(newRaw.isKeeper && !oldJpeg.isKeeper) << "the rating passes to the master";
    EXPECT_FALSE(f.folder.sfPicDetails_fullArray.contains(&oldJpeg));
    EXPECT_TRUE(f.folder.quickSelection.contains(&newRaw) && !f.folder.quickSelection.contains(&oldJpeg));
}

TEST(FileGroupsPairing, TheImportOptionsSwitchLeavesEveryFileAlone)
{
    StagedFolder f;
    MySinglePic &raw = f.stage("IMG_5.ARW", RawFormat);
    f.stage("IMG_5.JPG", JpegFormat);
    f.folder.perFolderImportOptions.createFileGroups = false;
    f.groups().formAfterScan();
    EXPECT_EQ(raw.bundleDependentImage, nullptr);
    f.folder.perFolderImportOptions.createFileGroups = true;
    f.groups().formAfterScan();
    EXPECT_NE(raw.bundleDependentImage, nullptr);
}

TEST(FileGroupsSidecars, XmpFollowsItsNamedExtensionAndADependentsXmpLiesWithItsMaster)
{
    QTemporaryDir dir;
    StagedFolder f;
    f.folder.sfFolderPath = dir.path();
    const auto sidecar = [&dir](const QString &name, const QString &forExtension) {
        XmpShape shape;
        if (!forExtension.isEmpty())
            shape.properties.push_back({"photoshop:SidecarForExtension", forExtension});
        QFile file(QDir(dir.path()).filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(buildXmpSidecar(shape).bytes);
        return file.fileName();
    };
    MySinglePic &raw = f.stage("P.CR2", RawFormat);
    MySinglePic &jpeg = f.stage("P.JPG", JpegFormat);
    MySinglePic &single = f.stage("Q.JPG", JpegFormat);
    f.folder.xmpSidecarPaths = {sidecar("P.xmp", "JPG"), sidecar("Q.XMP", ""), sidecar("R.xmp", "")};
    f.folder.aaeSidecarPaths = {QDir(dir.path()).filePath("Q.AAE")};
    f.pairAll();
    f.groups().matchSidecars();

    EXPECT_EQ(raw.spSidecarExtensions, (QStringList{"JPG", "xmp"}));
    EXPECT_EQ(jpeg.spSidecarExtensions, QStringList{MySinglePic::isXmpMaster});
    EXPECT_EQ(jpeg.spXMPPath(), QDir(dir.path()).filePath("P.xmp")) << "the JPEG's dates are in it";
    EXPECT_TRUE(raw.spXMPPath().isEmpty());
    EXPECT_EQ(single.spSidecarExtensions, (QStringList{"AAE", "XMP"}));
    EXPECT_EQ(single.spSidecarFiles(), (QStringList{"Q.AAE", "Q.XMP"}));
    EXPECT_EQ(f.folder.importErrors.paths(ImportErrors::SidecarWithoutItem),
              QStringList{QDir(dir.path()).filePath("R.xmp")});
}
