// Thumbnail sizes, the queue's order and width, and decoding of real files and of bad ones.

#include "core/MySinglePic.h"
#include "core/Preferences.h"
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

// Pixels that compress poorly, as a photo's do.
QImage noise(int width, int height, quint32 seed = 1)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            seed = seed * 1664525u + 1013904223u;
            image.setPixel(x, y, seed >> 8);
        }
    return image;
}

TEST(ThumbSizesTest, TableAndEntryForms)
{
    EXPECT_EQ(cachedThumbSide(0, 252), 50);
    EXPECT_EQ(cachedThumbSide(3, 252), 500);
    EXPECT_EQ(cachedThumbSide(4, 126), 126); // beyond the table: as it was

    // An entry holds only compressed bytes; drawing decodes them at the size it needs.
    const ThumbEntry usual = ThumbEntry::make(solid(3000, 2000), 252);
    EXPECT_EQ(usual.largestThumbSize, QSize(252, 168));
    EXPECT_TRUE(usual.compressedData.startsWith("\xFF\xD8")); // JPEG without alpha
    EXPECT_EQ(usual.cost(), usual.compressedData.size() + ThumbEntry::overheadBytes);
    EXPECT_LT(usual.cost(), 252 * 168); // far below a byte a pixel, let alone four
    EXPECT_EQ(usual.currentSizeImage().size(), QSize(252, 168));
    EXPECT_EQ(usual.decodedForSide(117).size(), QSize(117, 78));
    EXPECT_EQ(usual.decodedForSide(400).size(), QSize(252, 168)); // never larger than stored
    EXPECT_TRUE(ThumbEntry::make(solid(300, 200, true), 252).compressedData.startsWith("II*")); // TIFF with alpha
    EXPECT_EQ(ThumbEntry::make(solid(40, 30), cachedThumbSide(0, 252)).largestThumbSize, QSize(40, 30));

    // The 252 form only for side 500, with the preference, and larger than 252 both ways; it
    // serves the sizes it is large enough for.
    const ThumbEntry sharp = ThumbEntry::make(solid(600, 400), 500, true);
    EXPECT_FALSE(sharp.maxiThumb.isEmpty());
    EXPECT_EQ(sharp.decodedForSide(200).width(), 200);
    EXPECT_EQ(sharp.decodedForSide(450).width(), 450);
    EXPECT_TRUE(ThumbEntry::make(solid(600, 200), 500, true).maxiThumb.isEmpty());
    EXPECT_TRUE(ThumbEntry::make(solid(600, 400), 500, false).maxiThumb.isEmpty());
    EXPECT_TRUE(ThumbEntry::make(solid(600, 400), 252, true).maxiThumb.isEmpty());
}

TEST(ThumbCacheTest, TheBoundInBytesEvictsTheLeastRecentlyUsed)
{
    const ThumbEntry entry = ThumbEntry::make(solid(300, 200), 252);
    const qsizetype cost = entry.cost();
    ThumbCache cache(3 * cost + cost / 2);
    for (quint32 id : {1u, 2u, 3u})
        EXPECT_FALSE(cache.insert(id, entry).evicted);
    EXPECT_EQ(cache.totalBytes(), 3 * cost);
    ASSERT_TRUE(cache.entry(1)); // drawn: now the most recently used
    const ThumbCache::Insertion fourth = cache.insert(4, entry);
    EXPECT_TRUE(fourth.stored);
    EXPECT_TRUE(fourth.evicted);
    EXPECT_TRUE(cache.contains(1));
    EXPECT_FALSE(cache.contains(2));
    EXPECT_TRUE(cache.contains(3));
    EXPECT_TRUE(cache.contains(4));
    EXPECT_LE(cache.totalBytes(), cache.maxBytes());

    // A smaller bound evicts at once, oldest first; an entry larger than the bound is refused.
    cache.setMaxBytes(cost);
    EXPECT_EQ(cache.count(), 1);
    EXPECT_TRUE(cache.contains(4));
    EXPECT_FALSE(cache.insert(5, ThumbEntry::make(noise(300, 200), 252)).stored);
    EXPECT_FALSE(cache.contains(5));

    Preferences prefs{QString()};
    EXPECT_EQ(ThumbCache::maxBytesFromPreferences(prefs), 256LL * 1024 * 1024); // the registered default
    prefs.setInteger(ThumbCache::boundKey, 64);
    EXPECT_EQ(ThumbCache::maxBytesFromPreferences(prefs), 64LL * 1024 * 1024);
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

TEST(ThumbQueueTest, AFullCacheEndsTheBackgroundWorkInsteadOfBuildingWhatItEvicted)
{
    QTemporaryDir dir;
    int argc = 1;
    char name[5] = "test";
    char *argv[2] = {name, nullptr};
    QCoreApplication app(argc, argv);
    MySingleFolder folder(dir.path(), false);
    folder.sfFolderPath = dir.path();
    QList<MySinglePic *> pics;
    for (int i = 0; i < 40; ++i) {
        const QString file = QStringLiteral("IMG_%1.jpg").arg(i);
        ASSERT_TRUE(noise(300, 200, quint32(i + 1)).save(dir.filePath(file), "jpeg", 90));
        pics.append(folder.adoptPic(std::make_unique<MySinglePic>(file, &folder, SpTypeExifOriginal, Instant(i))));
    }
    MyThumbsQueue queue;
    const qsizetype entryCost = ThumbEntry::make(noise(300, 200), 252).cost();
    queue.cache().setMaxBytes(12 * entryCost);
    bool stopped = false;
    QObject::connect(&queue, &MyThumbsQueue::autoBGThumbGenerationStopped, [&] { stopped = true; });
    // Two visible, the rest in the background: more than the cache holds.
    queue.runThumbs({{pics, {10, 2}}});
    EXPECT_GE(queue.remainingCount(), 30);
    queue.waitForDone();
    EXPECT_TRUE(stopped);
    EXPECT_FALSE(queue.settings().autoBGThumbGeneration);
    EXPECT_EQ(queue.remainingCount(), 0);
    EXPECT_LE(queue.cache().totalBytes(), queue.cache().maxBytes());
    for (qsizetype i = 10; i < 12; ++i)
        EXPECT_TRUE(queue.cache().contains(pics[i]->sessionUniqueId)) << i;
    // Scrolling on builds what comes on screen, and only that.
    queue.runThumbs({{pics, {30, 2}}});
    EXPECT_LE(queue.queuedCount(), 2 + 2 * 4);
    queue.waitForDone();
    EXPECT_TRUE(queue.cache().contains(pics[30]->sessionUniqueId));
    EXPECT_LE(queue.cache().totalBytes(), queue.cache().maxBytes());
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
