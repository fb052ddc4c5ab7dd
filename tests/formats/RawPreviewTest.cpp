// The preview scan in RAW files the platform cannot read: the largest decodable embedded JPEG,
// found by its markers, and the scan stops only at one larger than 640 on both sides.

#include "formats/MySingleFolderDataReader.h"
#include "support/MediaFileBuilder.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

std::optional<RawPreviewInfo> previewOf(const QByteArray &bytes,
                                        std::optional<TiffHeader> header = std::nullopt)
{
    QTemporaryDir dir;
    return MySingleFolderDataReader().savereadInternalJPGs(
        MediaFile{bytes, {}, "raw"}.write(dir.path()), header);
}

const QByteArray rawHead = QByteArray(300, '\x11');

TEST(RawPreviews, APreviewOf640By480DoesNotStopTheScan)
{
    const QByteArray small = encodeJpegImage({640, 480});
    const QByteArray wide = encodeJpegImage({700, 480});
    const QByteArray large = encodeJpegImage({800, 656});
    const QByteArray bytes = rawHead + small + wide + large + encodeJpegImage({1024, 768});
    const auto preview = previewOf(bytes);
    ASSERT_TRUE(preview && preview->hasPreview());
    // 700 by 480 is larger on one side only; 800 by 656 is the first above 640 on both.
    EXPECT_EQ(preview->jpgSize, QSize(800, 656));
    EXPECT_EQ(preview->soiOffset, quint32(rawHead.size() + small.size() + wide.size()));
    EXPECT_EQ(preview->eoiOffset, preview->soiOffset + quint32(large.size()));
    EXPECT_EQ(preview->jpgData, large);
}

TEST(RawPreviews, OnlyAPreviewLargerOnBothSidesReplacesTheBest)
{
    const QByteArray bytes = rawHead + encodeJpegImage({320, 240}) + encodeJpegImage({400, 200}) +
                             encodeJpegImage({160, 120});
    const auto preview = previewOf(bytes);
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->jpgSize, QSize(320, 240));
}

TEST(RawPreviews, NestedImagesCountAsOneAndAFourthLevelStops)
{
    // A thumbnail inside a preview's own segment, as Exif thumbnails stand.
    const QByteArray thumbnail = encodeJpegImage({32, 24});
    const QByteArray outer = encodeJpegImage({200, 100});
    ByteWriter app1(ByteOrder::Motorola);
    app1.bytes("\xFF\xE1");
    app1.u16(quint16(thumbnail.size() + 2));
    app1.bytes(thumbnail);
    const QByteArray nested = outer.left(2) + app1.data() + outer.mid(2);
    auto preview = previewOf(rawHead + nested);
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->jpgSize, QSize(200, 100));
    EXPECT_EQ(preview->jpgData, nested);

    const QByteArray opening("\xFF\xD8\xFF", 3);
    EXPECT_FALSE(
        previewOf(rawHead + opening + opening + opening + opening + encodeJpegImage({64, 64})));
}

TEST(RawPreviews, AnUndecodableRangeStopsTheScan)
{
    const QByteArray broken =
        QByteArray("\xFF\xD8\xFF\xE0", 4) + QByteArray(64, '\x22') + "\xFF\xD9";
    EXPECT_FALSE(previewOf(rawHead + broken + encodeJpegImage({800, 700})));
}

TEST(RawPreviews, MakeAndModelComeFromTheTiffHeader)
{
    const QByteArray tiff =
        buildExifBlock(
            {.order = ByteOrder::Motorola, .make = "NIKON CORPORATION", .model = "NIKON D70"})
            .bytes;
    const auto preview = previewOf(tiff + encodeJpegImage({96, 64}), TiffHeader{0, false});
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->make, "NIKON CORPORATION");
    EXPECT_EQ(preview->model, "NIKON D70");
    EXPECT_EQ(preview->jpgSize, QSize(96, 64));
    EXPECT_FALSE(previewOf(QByteArray(2048, '\x33')));
}

} // namespace
