// Thumbnail sizes, the queue's order and width, and decoding of real files and of bad ones.

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "support/Corpus.h"
#include "thumbs/MyThumbsQueue.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <iostream>

using namespace orv;
using orv::test::corpusFile;

namespace {

QImage solid(int width, int height, bool alpha = false)
{
    QImage image(width, height, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image.fill(alpha ? QColor(10, 200, 30, 128) : QColor(10, 200, 30));
    return image;
}

TEST(ThumbSizesTest, TableAndEntryForms)
{
    EXPECT_EQ(cachedThumbSide(0, 252), 50);
    EXPECT_EQ(cachedThumbSide(3, 252), 500);
    EXPECT_EQ(cachedThumbSide(4, 126), 126); // beyond the table: as it was

    // Side 50: a small image has only the compressed form and the mini form.
    const ThumbEntry small = ThumbEntry::make(solid(40, 30), cachedThumbSide(0, 252));
    EXPECT_FALSE(small.compressedData.isEmpty());
    EXPECT_TRUE(small.prevThumb.isNull());
    EXPECT_TRUE(small.maxiThumb.isEmpty());
    EXPECT_EQ(small.miniThumb.size(), QSize(40, 30));

    const ThumbEntry usual = ThumbEntry::make(solid(3000, 2000), 252);
    EXPECT_EQ(usual.largestThumbSize, QSize(252, 168));
    EXPECT_EQ(usual.prevThumb.size(), QSize(126, 84));
    EXPECT_EQ(usual.miniThumb.size(), QSize(50, 33));
    EXPECT_TRUE(usual.compressedData.startsWith("\xFF\xD8")); // JPEG without alpha
    EXPECT_EQ(usual.currentSizeImage().size(), QSize(252, 168));
    EXPECT_TRUE(ThumbEntry::make(solid(300, 200, true), 252).compressedData.startsWith("II*")); // TIFF with alpha

    // The 252 form only for side 500, with the preference, and larger than 252 both ways.
    EXPECT_FALSE(ThumbEntry::make(solid(600, 400), 500, true).maxiThumb.isEmpty());
    EXPECT_TRUE(ThumbEntry::make(solid(600, 200), 500, true).maxiThumb.isEmpty());
    EXPECT_TRUE(ThumbEntry::make(solid(600, 400), 500, false).maxiThumb.isEmpty());
    EXPECT_TRUE(ThumbEntry::make(solid(600, 400), 252, true).maxiThumb.isEmpty());
}

TEST(ThumbQueueTest, WidthAndOrder)
{
    EXPECT_EQ(MyThumbsQueue::maxCountWithAutoBG(4, true), 1);
    EXPECT_EQ(MyThumbsQueue::maxCountWithAutoBG(4, false), 3);
    EXPECT_EQ(MyThumbsQueue::maxCountWithAutoBG(8, true), 4);
    EXPECT_EQ(MyThumbsQueue::maxCountWithAutoBG(8, false), 6);
    EXPECT_EQ(MyThumbsQueue::maxCountWithAutoBG(2, true), 1);

    MySingleFolder folder(QStringLiteral("/trip"), false);
    QList<MySinglePic *> pics;
    for (int i = 0; i < 12; ++i)
        pics.append(folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("%1.jpg").arg(i), &folder,
                                                                  SpTypeExifOriginal, Instant(i))));
    const MyThumbsQueue::StripList strip{pics, {6, 2}};
    // Visible 6 and 7, widened by 4 each side: 2 to 11.
    EXPECT_EQ(MyThumbsQueue::orderedForStrip(strip, false, false), pics.mid(2, 10));
    const QList<MySinglePic *> all = MyThumbsQueue::orderedForStrip(strip, true, false);
    EXPECT_EQ(all, pics.mid(2) + QList<MySinglePic *>({pics[1], pics[0]}));
    const QList<MySinglePic *> reversed = MyThumbsQueue::orderedForStrip(strip, true, true);
    EXPECT_EQ(reversed.mid(0, 12), pics.mid(2, 10) + QList<MySinglePic *>({pics[1], pics[0]}));

    const QList<MySinglePic *> merged = MyThumbsQueue::mergedAlternating({{pics[0], pics[1], pics[2]}, {pics[5], pics[1]}});
    EXPECT_EQ(merged, QList<MySinglePic *>({pics[0], pics[5], pics[1], pics[2]}));
}

class DecodeTest : public ::testing::Test
{
protected:
    void SetUp() override { ORV_SKIP_WITHOUT_CORPUS(); }
};

TEST_F(DecodeTest, EveryKindDecodesUprightAtTheSizeAsked)
{
    // 3264 x 1836 stored, orientation 6: upright it stands.
    const QImage turned = ThumbDecoder::decodeWithReader(corpusFile("metadata-extractor-images/jpg/Blackberry Z10.jpg"), 252);
    EXPECT_EQ(turned.height(), 252);
    EXPECT_NEAR(turned.width(), 142, 1);

    const QImage heic = ThumbDecoder::decodeHeif(corpusFile("Lychee/tests/Samples/classic-car.heic"), 252);
    ASSERT_FALSE(heic.isNull());
    EXPECT_EQ(std::max(heic.width(), heic.height()), 252);
    EXPECT_FALSE(ThumbDecoder::decodeHeif(corpusFile("metadata-extractor-images/avif/Issue 649.avif"), 126).isNull());

    // Many corpus RAW files are pruned of their previews; those that keep one decode.
    QStringList rawPreviews;
    for (const QString &path : orv::test::corpusFiles({"cr2", "cr3", "nef", "dng", "rw2", "raf", "mrw", "crw"}))
        if (const QImage raw = ThumbDecoder::decodeRawPreview(path, 252); !raw.isNull()) {
            EXPECT_LE(std::max(raw.width(), raw.height()), 252) << path.toStdString();
            // A preview smaller than asked is scaled up to the size.
            const QImage built = ThumbDecoder::decode({1, path, ThumbRequest::Kind::Raw, 252, false});
            EXPECT_EQ(std::max(built.width(), built.height()), 252) << path.toStdString();
            rawPreviews.append(QFileInfo(path).fileName());
        }
    EXPECT_FALSE(rawPreviews.isEmpty());
    std::cout << "RAW previews: " << rawPreviews.join(u' ').toStdString() << "\n";

    const QImage movie = ThumbDecoder::decodeMovieFrame(corpusFile("Lychee/tests/Samples/train.mov"), 252);
    ASSERT_FALSE(movie.isNull());
    EXPECT_EQ(std::max(movie.width(), movie.height()), 252);

    // An embedded EXIF thumbnail smaller than asked: the pixels are used after all.
    const QString phone = corpusFile("exifr/test/fixtures/IMG_20180725_163423.jpg");
    const QImage embedded = ThumbDecoder::decodeEmbeddedExifThumbnail(phone);
    ASSERT_FALSE(embedded.isNull());
    const int embeddedSide = std::max(embedded.width(), embedded.height());
    const QImage built = ThumbDecoder::decode({1, phone, ThumbRequest::Kind::Photo, 2 * embeddedSide, true});
    EXPECT_EQ(std::max(built.width(), built.height()), 2 * embeddedSide);
}

TEST_F(DecodeTest, BadInputGetsTheIconAndTheOthersGoOn)
{
    QTemporaryDir dir;
    const auto write = [&dir](const char *name, const QByteArray &bytes) {
        QFile file(dir.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    };
    QFile source(corpusFile("Lychee/tests/Samples/train.jpg"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QByteArray jpeg = source.readAll();
    write("good.jpg", jpeg);
    write("noise.jpg", QByteArray(5000, 'x'));
    write("truncated.jpg", jpeg.left(jpeg.size() / 3));
    write("noise.mov", QByteArray("\0\0\0\x14" "ftypqt  \0\0\0\0qt  ", 20) + QByteArray(2000, '\0'));
    // A movie with no video stream: a few seconds of silence as WAV bytes in a movie's name.
    QByteArray wav("RIFF\x24\x7d\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x40\x1f\0\0\x80\x3e\0\0\x02\0\x10\0data\0\x7d\0\0", 44);
    write("silent.mov", wav + QByteArray(32000, '\0'));

    int argc = 1;
    char name[5] = "test";
    char *argv[2] = {name, nullptr};
    QCoreApplication app(argc, argv);
    MySingleFolder folder(dir.path(), false);
    folder.sfFolderPath = dir.path();
    QList<MySinglePic *> pics;
    for (const char *file : {"noise.jpg", "truncated.jpg", "noise.mov", "silent.mov", "good.jpg"})
        pics.append(folder.adoptPic(std::make_unique<MySinglePic>(QString::fromLatin1(file), &folder,
                                                                  QByteArray(file).endsWith(".mov") ? SpTypeMovieFileDate
                                                                                                    : SpTypeExifOriginal,
                                                                  Instant(0))));
    MyThumbsQueue queue;
    // A save runs: nothing is read until it ends.
    queue.setPaused(true);
    queue.runThumbs({{pics, {0, 5}}});
    EXPECT_EQ(queue.queuedCount(), 0);
    queue.setPaused(false);
    queue.waitForDone();
    ThumbCache &cache = queue.cache();
    for (MySinglePic *pic : pics)
        EXPECT_TRUE(cache.contains(pic->sessionUniqueId)) << pic->spName.toStdString();
    EXPECT_TRUE(cache.didBuildThumbFail(pics[0]->sessionUniqueId));
    EXPECT_TRUE(cache.didBuildThumbFail(pics[2]->sessionUniqueId));
    EXPECT_TRUE(cache.didBuildThumbFail(pics[3]->sessionUniqueId));
    EXPECT_FALSE(cache.didBuildThumbFail(pics[4]->sessionUniqueId));
    EXPECT_EQ(cache.entry(pics[4]->sessionUniqueId)->largestThumbSize.width(), 252);
    // Failed items are not tried again.
    queue.runThumbs({{pics, {0, 5}}});
    EXPECT_EQ(queue.queuedCount(), 0);
}

} // namespace
