// The thumbnails file of a state, byte for byte: what it holds comes back, and a damaged file
// gives the records before the damage and a message naming the file.

#include "states/SavedThumbs.h"

#include <QBuffer>
#include <QImage>
#include <QtEndian>

#include <gtest/gtest.h>

using namespace orv;
using namespace Qt::StringLiterals;

namespace {

QByteArray jpeg(Qt::GlobalColor color)
{
    QImage image(24, 16, QImage::Format_RGB32);
    image.fill(color);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 75);
    return data;
}

TEST(SavedThumbs, RecordsAreWrittenInTheirFixedLayoutAndReadBack)
{
    const QList<ThumbRecord> records{{0, jpeg(Qt::red), 0.0}, {2, jpeg(Qt::blue), 0.0}, {2, jpeg(Qt::green), 12.5}};
    const QByteArray file = SavedThumbs::write(records);

    EXPECT_EQ(file.left(27).toHex(), "6f7276656c5468756d6273" "0400000000000000" "0300000000000000");
    const QByteArray first = records[0].data;
    EXPECT_EQ(qFromLittleEndian<qint64>(file.constData() + 27), first.size());
    EXPECT_EQ(file.mid(35, 8).toHex(), "0000000000000000") << "the item's index";
    EXPECT_EQ(file.mid(43, first.size()), first);
    const qsizetype last = file.size() - 8;
    EXPECT_EQ(file.mid(last).toHex(), "0000000000002940") << "12.5 as a little-endian double";

    const SavedThumbs::ReadResult read = SavedThumbs::read(file, 3, u"thumbs"_s);
    EXPECT_EQ(read.problem, QString());
    EXPECT_EQ(read.records, records);
    EXPECT_FALSE(QImage::fromData(read.records[2].data).isNull());
}

TEST(SavedThumbs, DamageEndsTheReadingAndKeepsWhatCameBefore)
{
    const QList<ThumbRecord> records{{0, jpeg(Qt::red), 0.0}, {1, jpeg(Qt::blue), 0.0}};
    const QByteArray file = SavedThumbs::write(records);

    const SavedThumbs::ReadResult cut = SavedThumbs::read(file.chopped(20), 2, u"thumbs"_s);
    EXPECT_EQ(cut.records, records.first(1));
    EXPECT_EQ(cut.problem, u"thumbs: record 1 is cut short"_s);

    const SavedThumbs::ReadResult beyond = SavedThumbs::read(file, 1, u"thumbs"_s);
    EXPECT_EQ(beyond.records, records.first(1)) << "an index beyond the items ends the reading";
    EXPECT_EQ(beyond.problem, u"thumbs: record 1 names item 1 of 1"_s);

    QByteArray hugeLength = file;
    hugeLength.replace(27, 8, QByteArray::fromHex("ffffffffffffff7f"));
    EXPECT_TRUE(SavedThumbs::read(hugeLength, 2, u"thumbs"_s).records.isEmpty());

    QByteArray otherMagic = file;
    otherMagic[0] = 'X';
    EXPECT_EQ(SavedThumbs::read(otherMagic, 2, u"thumbs"_s).problem, u"thumbs: not a thumbnails file"_s);
    QByteArray otherVersion = file;
    otherVersion[11] = 3;
    EXPECT_EQ(SavedThumbs::read(otherVersion, 2, u"thumbs"_s).problem, u"thumbs: version 3 is not read"_s);
    EXPECT_FALSE(SavedThumbs::read(file + "x", 2, u"thumbs"_s).problem.isEmpty());
}

} // namespace
