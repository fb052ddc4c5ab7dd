// orvelle-cli rate on corpus copies: exiftool reads the rating each file or its sidecar took (in
// place in the packet's padding, or through exiftool), a scan reads it back, and a revert puts
// every byte back and takes away the sidecars the run made.

#include "support/CliRun.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/JpegBuilder.h"
#include "support/SaveFixture.h"
#include "support/XmpBuilder.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <map>

using namespace orv;
using namespace orv::test;

namespace {

// A corpus file, and where other programs read its rating: the file itself or its sidecar.
struct Sample
{
    const char *corpus;
    bool inPlace;     // the packet's padding takes it: length and modification time stay
    bool sidecar;     // the rating goes to the XMP sidecar beside it
};

const Sample samples[] = {
    {"metadata-extractor-images/jpg/Apple iPhone 6 plus.jpg", true, false}, // xmp:Rating="2"
    {"exifr/test/fixtures/canon-dslr.jpg", true, false},                    // <xmp:Rating>0<
    {"metadata-extractor-images/heic/IMG_2927.HEIC", true, false},
    {"exiftool-t/PhotoMechanic.jpg", false, false}, // a packet without padding
    {"exiftool-t/Canon.jpg", false, false},         // no packet
    {"exiv2/test/data/IMG_3578.heic", false, false},
    {"exiftool-t/CanonRaw.cr2", false, true},
    {"exiftool-t/QuickTime.mov", false, true},
    {"exifr/test/fixtures/sidecar/IMG_5910.jpg", false, true}, // with its own IMG_5910.xmp
};

class RateCommand : public ::testing::Test
{
protected:
    QTemporaryDir home;
    QTemporaryDir work;
    QStringList files;
    std::map<QString, QByteArray> originals;

    void SetUp() override
    {
        for (const Sample &sample : samples) {
            const QString source = corpusFile(QString::fromUtf8(sample.corpus));
            if (!QFileInfo::exists(source))
                GTEST_SKIP() << "no corpus";
            files << copyToTemporary(source, work);
        }
        copyToTemporary(corpusFile(QStringLiteral("exifr/test/fixtures/sidecar/IMG_5910.xmp")), work);
        originals = folderBytes();
    }

    std::map<QString, QByteArray> folderBytes() const
    {
        std::map<QString, QByteArray> bytes;
        for (const QString &name : QDir(work.path()).entryList(QDir::Files | QDir::Hidden))
            bytes[name] = fileBytes(work.filePath(name));
        return bytes;
    }

    static QString readerPath(const Sample &sample, const QString &file)
    {
        const QFileInfo info(file);
        return sample.sidecar ? info.dir().filePath(info.completeBaseName() + QLatin1String(".xmp")) : file;
    }

    // The rating exiftool reads for every sample, and the run's entries by file name.
    void expectRatings(const CliResult &run, int xmpRating, int rating)
    {
        ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
        std::map<QString, QJsonObject> entries;
        for (const QJsonValue &entry : run.json())
            entries[QFileInfo(entry[u"path"].toString()).fileName()] = entry.toObject();
        for (std::size_t i = 0; i < std::size(samples); ++i) {
            const QString name = QFileInfo(files[i]).fileName();
            ASSERT_TRUE(entries.count(name)) << name.toStdString();
            EXPECT_TRUE(entries[name][u"saved"].toBool()) << name.toStdString();
            EXPECT_EQ(entries[name][u"rating"].toInt(), rating) << name.toStdString();
            EXPECT_EQ(entries[name][u"xmpRating"].toInt(), xmpRating) << name.toStdString();
            EXPECT_EQ(exiftoolTags(readerPath(samples[i], files[i]), ExiftoolGroups::Family1)
                          .number(QStringLiteral("XMP-xmp:Rating")),
                      xmpRating)
                << name.toStdString();
        }
    }
};

TEST_F(RateCommand, EveryFormTakesTheRatingWhereOtherProgramsReadItAndARevertTakesItBack)
{
    std::map<QString, qint64> modified;
    for (const QString &file : files)
        modified[file] = QFileInfo(file).lastModified().toMSecsSinceEpoch();

    const CliResult keepers = runCli({"rate", "--keeper", "--json", work.path()}, home.path());
    expectRatings(keepers, 5, 1);
    const std::map<QString, QByteArray> rated = folderBytes();
    for (std::size_t i = 0; i < std::size(samples); ++i) {
        const QString name = QFileInfo(files[i]).fileName();
        if (samples[i].inPlace) {
            EXPECT_EQ(rated.at(name).size(), originals.at(name).size()) << name.toStdString();
        }
        if (!samples[i].sidecar || samples[i].inPlace)
            EXPECT_NE(rated.at(name), originals.at(name)) << name.toStdString();
        else
            EXPECT_EQ(rated.at(name), originals.at(name)) << name.toStdString();
        EXPECT_EQ(QFileInfo(files[i]).lastModified().toMSecsSinceEpoch(), modified[files[i]]) << name.toStdString();
    }
    EXPECT_TRUE(rated.count(QStringLiteral("CanonRaw.xmp")));
    EXPECT_TRUE(rated.count(QStringLiteral("QuickTime.xmp")));

    const CliResult scanned = runCli({"scan", "--json", work.path()}, home.path());
    ASSERT_EQ(scanned.exitCode, 0) << scanned.err.toStdString();
    ASSERT_EQ(scanned.json().size(), qsizetype(std::size(samples)));
    for (const QJsonValue &entry : scanned.json())
        EXPECT_EQ(entry[u"rating"].toInt(), 1) << entry[u"path"].toString().toStdString();

    const CliResult again = runCli({"rate", "--keeper", "--json", work.path()}, home.path());
    ASSERT_EQ(again.exitCode, 0) << again.err.toStdString();
    for (const QJsonValue &entry : again.json())
        EXPECT_FALSE(entry.toObject().contains(u"xmpRating")) << entry[u"path"].toString().toStdString();
    EXPECT_EQ(folderBytes(), rated);

    // The run that wrote nothing has no revert of its own: the one before it is taken back.
    const CliResult reverted = runCli({"revert"}, home.path());
    EXPECT_EQ(reverted.exitCode, 0) << reverted.err.toStdString();
    EXPECT_EQ(folderBytes(), originals);
}

TEST_F(RateCommand, RejectsTakeMinusOneAndNeutralsThatSaidSoTakeZero)
{
    expectRatings(runCli({"rate", "--reject", "--json", work.path()}, home.path()), -1, -1);
    expectRatings(runCli({"rate", "--neutral", "--json", work.path()}, home.path()), 0, 0);
}

// A raw file and its JPEG are one item: both files show the group's rating, and the rating the
// JPEG gave the group at import is no change to write into the raw's sidecar.
TEST_F(RateCommand, AGroupsFilesTakeItsRatingTogetherAndOnlyWhenItChanged)
{
    QTemporaryDir pair;
    const QString raw = pair.filePath(QStringLiteral("IMG_1.CR2"));
    ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/CanonRaw.cr2")), raw));
    QFile::setPermissions(raw, QFile::permissions(raw) | QFile::WriteOwner);
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    buildJpeg({.exif = tags, .xmp = buildXmp({.properties = {{QStringLiteral("xmp:Rating"), QStringLiteral("5")}}})})
        .write(pair.path(), QStringLiteral("IMG_1"));
    const QString jpeg = pair.filePath(QStringLiteral("IMG_1.jpg"));
    const QString sidecar = pair.filePath(QStringLiteral("IMG_1.xmp"));
    const auto rating = [](const QString &path) {
        return exiftoolTags(path, ExiftoolGroups::Family1).number(QStringLiteral("XMP-xmp:Rating"));
    };
    const QByteArray rawBytes = fileBytes(raw), jpegBytes = fileBytes(jpeg);

    const CliResult kept = runCli({"rate", "--keeper", pair.path()}, home.path());
    ASSERT_EQ(kept.exitCode, 0) << kept.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(sidecar));
    EXPECT_EQ(fileBytes(jpeg), jpegBytes);

    const CliResult rejected = runCli({"rate", "--reject", pair.path()}, home.path());
    ASSERT_EQ(rejected.exitCode, 0) << rejected.err.toStdString();
    EXPECT_EQ(rating(jpeg), -1);
    EXPECT_EQ(rating(sidecar), -1);
    EXPECT_EQ(fileBytes(raw), rawBytes);

    EXPECT_EQ(runCli({"revert"}, home.path()).exitCode, 0);
    EXPECT_EQ(fileBytes(jpeg), jpegBytes);
    EXPECT_FALSE(QFileInfo::exists(sidecar));

    // Neutral: only the JPEG said keeper; the raw, unrated, has nothing to take.
    const CliResult neutral = runCli({"rate", "--neutral", pair.path()}, home.path());
    ASSERT_EQ(neutral.exitCode, 0) << neutral.err.toStdString();
    EXPECT_EQ(rating(jpeg), 0);
    EXPECT_FALSE(QFileInfo::exists(sidecar));
    EXPECT_EQ(fileBytes(raw), rawBytes);
}

TEST_F(RateCommand, WrongUsageChangesNothing)
{
    for (const QStringList &line : {QStringList{"rate", work.path()}, QStringList{"rate", "--keeper", "--reject", work.path()},
                                    QStringList{"rate", "--keeper"}, QStringList{"rate", "--keeper", "--by", "1", work.path()}}) {
        const CliResult run = runCli(line, home.path());
        EXPECT_EQ(run.exitCode, 2) << line.join(u' ').toStdString();
        EXPECT_TRUE(run.err.contains("Usage: orvelle-cli rate")) << run.err.toStdString();
    }
    EXPECT_EQ(folderBytes(), originals);
}

} // namespace
