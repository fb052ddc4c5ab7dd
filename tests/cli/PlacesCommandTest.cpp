// places lists the zone search's hits; locate --place puts a file at the first one, as exiftool
// reads it back.

#include "support/CliRun.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

QByteArray digest(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

TEST(PlacesCommand, ListsMatchesWithZonesAndLocateTakesTheFirst)
{
    QTemporaryDir home, work;
    const CliResult json = runCli({QStringLiteral("places"), QStringLiteral("--json"), QStringLiteral("--limit"),
                                   QStringLiteral("3"), QStringLiteral("lisb")},
                                  home.path());
    ASSERT_EQ(json.exitCode, 0) << json.err.toStdString();
    const QJsonObject answer = QJsonDocument::fromJson(json.out).object();
    EXPECT_EQ(answer.value("query").toString(), QStringLiteral("lisb"));
    const QJsonArray list = answer.value("places").toArray();
    ASSERT_GE(list.size(), 1);
    EXPECT_LE(list.size(), 3);
    const QJsonObject lisbon = list.at(0).toObject();
    EXPECT_EQ(lisbon.value("name").toString(), QStringLiteral("Lisbon"));
    EXPECT_EQ(lisbon.value("timeZone").toString(), QStringLiteral("Europe/Lisbon"));
    EXPECT_EQ(lisbon.value("countryCode").toString(), QStringLiteral("PT"));
    EXPECT_NEAR(lisbon.value("latitude").toDouble(), 38.71667, 1e-4);
    EXPECT_NEAR(lisbon.value("longitude").toDouble(), -9.13333, 1e-4);

    const CliResult text = runCli({QStringLiteral("places"), QStringLiteral("Kyiv")}, home.path());
    ASSERT_EQ(text.exitCode, 0);
    EXPECT_TRUE(text.out.startsWith("Kyiv, Ukraine (Europe/Kyiv)\t50.45466,30.52380\n")) << text.out.toStdString();
    EXPECT_EQ(runCli({QStringLiteral("places"), QStringLiteral("Qqzzxx")}, home.path()).out, QByteArray());
    EXPECT_EQ(runCli({QStringLiteral("places")}, home.path()).exitCode, 2);
    EXPECT_EQ(runCli({QStringLiteral("places"), QStringLiteral("--limit"), QStringLiteral("0"), QStringLiteral("a")},
                     home.path()).exitCode, 2);

    const QString photo = buildJpeg({}).write(work.path(), QStringLiteral("photo"));
    const CliResult located = runCli({QStringLiteral("locate"), QStringLiteral("--place"), QStringLiteral("Lisbon"), photo},
                                     home.path());
    ASSERT_EQ(located.exitCode, 0) << located.err.toStdString();
    EXPECT_TRUE(located.err.contains("Lisbon, Portugal (Europe/Lisbon) at 38.71667,-9.13333")) << located.err.toStdString();
    const ExiftoolTags read = exiftoolTags(photo);
    EXPECT_NEAR(read.number("Composite:GPSLatitude"), 38.71667, 1e-5);
    EXPECT_NEAR(read.number("Composite:GPSLongitude"), -9.13333, 1e-5);

    const QByteArray before = digest(photo);
    const CliResult unknown = runCli({QStringLiteral("locate"), QStringLiteral("--place"), QStringLiteral("Qqzzxx"), photo},
                                     home.path());
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.contains("no place is called 'Qqzzxx'"));
    EXPECT_EQ(digest(photo), before);
}

} // namespace
