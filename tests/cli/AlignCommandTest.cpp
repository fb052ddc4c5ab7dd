// orvelle-cli align on crafted JPEGs: the rule's dates land in the files as exiftool reads them,
// through the same save as shift.

#include "support/CliRun.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"

#include <QDateTime>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

class AlignCommand : public ::testing::Test
{
protected:
    QTemporaryDir home;
    QTemporaryDir work;

    QString jpeg(const QString &name, const char *stamp)
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text(stamp);
        return buildJpeg({.exif = tags}).write(work.path(), name);
    }

    CliResult align(const QStringList &arguments) { return runCli(QStringList{"align"} + arguments, home.path()); }

    static QString original(const QString &path)
    {
        return exiftoolTags(path, ExiftoolGroups::Family1).string(QStringLiteral("ExifIFD:DateTimeOriginal"));
    }
};

TEST_F(AlignCommand, MatchingGapsSavesTheMiddleFileHalfwayAsExiftoolReadsIt)
{
    const QString first = jpeg(QStringLiteral("c"), "2024:05:01 10:00:00");
    const QString middle = jpeg(QStringLiteral("a"), "2024:05:01 10:00:01");
    const QString last = jpeg(QStringLiteral("b"), "2024:05:01 10:10:00");
    const QByteArray untouched = fileBytes(first);

    const CliResult result = align({"--by", "gaps", "--json", work.path()});

    ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(original(middle), QStringLiteral("2024:05:01 10:05:00"));
    EXPECT_EQ(original(last), QStringLiteral("2024:05:01 10:10:00"));
    EXPECT_EQ(fileBytes(first), untouched) << "an item that keeps its date is not written";
    const QJsonArray items = result.json();
    ASSERT_EQ(items.size(), 3);
    for (const QJsonValue &item : items) {
        const bool isMiddle = item["path"].toString() == middle;
        EXPECT_EQ(item["saved"].toBool(), isMiddle) << item["path"].toString().toStdString();
        if (isMiddle) {
            EXPECT_EQ(QDateTime::fromString(item["exifDateTimeOriginalOLD"].toString(), Qt::ISODate)
                          .secsTo(QDateTime::fromString(item["exifDateTimeOriginalNEW"].toString(), Qt::ISODate)),
                      299);
        }
    }
}

TEST_F(AlignCommand, ReversingTurnsTheOrderOverAndADryRunWritesNothing)
{
    const QString a = jpeg(QStringLiteral("a"), "2024:05:01 10:00:00");
    const QString b = jpeg(QStringLiteral("b"), "2024:05:01 10:00:01");
    const QString c = jpeg(QStringLiteral("c"), "2024:05:01 10:00:10");
    const QByteArray before = fileBytes(a);

    const CliResult dry = align({"--by", "reverse-intervals", "--dry-run", a, b, c});
    ASSERT_EQ(dry.exitCode, 0) << dry.err.toStdString();
    EXPECT_EQ(dry.out.count("exifDateTimeOriginal\t"), 3) << "OLD and NEW of every item";
    EXPECT_EQ(fileBytes(a), before);

    ASSERT_EQ(align({"--by", "reverse", a, b, c}).exitCode, 0);
    EXPECT_EQ(original(a), QStringLiteral("2024:05:01 10:00:10"));
    EXPECT_EQ(original(b), QStringLiteral("2024:05:01 10:00:01"));
    EXPECT_EQ(original(c), QStringLiteral("2024:05:01 10:00:00"));
}

TEST_F(AlignCommand, MinimizingPacksAroundTheMainFile)
{
    const QString a = jpeg(QStringLiteral("a"), "2024:05:01 10:00:00");
    const QString b = jpeg(QStringLiteral("b"), "2024:05:01 10:00:00");
    const QString main = jpeg(QStringLiteral("m"), "2024:05:01 12:00:00");

    ASSERT_EQ(align({"--by", "minimize", "--main", main, work.path()}).exitCode, 0);
    EXPECT_EQ(original(a), QStringLiteral("2024:05:01 11:59:58"));
    EXPECT_EQ(original(b), QStringLiteral("2024:05:01 11:59:59"));
    EXPECT_EQ(original(main), QStringLiteral("2024:05:01 12:00:00"));
}

TEST_F(AlignCommand, CopyingAnotherDateMovesOnlyTheFilesThatHaveIt)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.dateTimeDigitized = Stamp::text("2024:05:01 09:15:00");
    const QString digitized = buildJpeg({.exif = tags}).write(work.path(), QStringLiteral("d"));
    const QString plain = jpeg(QStringLiteral("p"), "2024:05:01 11:00:00");
    const QByteArray untouched = fileBytes(plain);

    const CliResult result = align({"--by", "copy:exifDateTimeDigitizedOLD", work.path()});

    ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(original(digitized), QStringLiteral("2024:05:01 09:15:00"));
    EXPECT_EQ(fileBytes(plain), untouched);
}

TEST_F(AlignCommand, WrongUsageIsExitCodeTwoAndTouchesNoFile)
{
    const QString a = jpeg(QStringLiteral("a"), "2024:05:01 10:00:00");
    const QByteArray before = fileBytes(a);
    const QList<QStringList> wrong = {{a},
                                      {"--by", "sideways", a},
                                      {"--by", "copy:nothing", a},
                                      {"--by", "gaps"},
                                      {"--by"},
                                      {"--by", "minimize", "--main", work.filePath("none.jpg"), a},
                                      {"--by", "gaps", "--frobnicate", a}};
    for (const QStringList &arguments : wrong)
        EXPECT_EQ(align(arguments).exitCode, 2) << arguments.join(' ').toStdString();
    EXPECT_EQ(fileBytes(a), before);
}

} // namespace
