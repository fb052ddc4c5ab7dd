// Ratings at a save, on corpus copies read back by exiftool: under the preference's default a
// rated file takes its new date and no rating; with it on, the rating goes into the packet in the
// same save as the new dates, and the next save still finds every value where the import saw it.

#include "core/PreSaveSummary.h"
#include "formats/SaveJournal.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/SaveFixture.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

class RatingSave : public SaveFixture
{
protected:
    QList<MySinglePic *> pics;
    QStringList paths;

    // Copies with xmp:Rating as an attribute ("2") and as an element ("0") in a padded packet,
    // and one without a packet.
    void importRejects()
    {
        for (const char *file : {"metadata-extractor-images/jpg/Apple iPhone 6 plus.jpg",
                                 "exifr/test/fixtures/canon-dslr.jpg", "exiftool-t/Canon.jpg"}) {
            const QString source = corpusFile(QString::fromUtf8(file));
            if (!QFileInfo::exists(source))
                GTEST_SKIP() << "no corpus";
            paths << copyToTemporary(source, dir);
            pics << &importPath(paths.last());
            pics.last()->isRejected = true;
        }
    }

    static QJsonObject ratingTags(const QString &path)
    {
        const QJsonObject all = exiftoolTags(path, ExiftoolGroups::Family1, {QStringLiteral("-a")}).json;
        QJsonObject ratings;
        for (auto it = all.begin(); it != all.end(); ++it) {
            if (it.key().contains(QLatin1String("Rating")))
                ratings.insert(it.key(), it.value());
        }
        return ratings;
    }
};

TEST_F(RatingSave, UnderTheDefaultARatedFileTakesItsNewDateAndNoRating)
{
    importRejects();
    ASSERT_FALSE(defaultSettings().writeRatingsToXMPOnSave);
    std::vector<QJsonObject> before;
    for (const QString &path : paths)
        before.push_back(ratingTags(path));
    const SaveOutcome outcome = shift(3600.0);
    for (qsizetype i = 0; i < paths.size(); ++i) {
        EXPECT_TRUE(outcome.savedPics.contains(pics[i])) << paths[i].toStdString();
        EXPECT_EQ(ratingTags(paths[i]), before[std::size_t(i)]) << paths[i].toStdString();
        EXPECT_TRUE(pics[i]->xmpRatingToWrite()) << paths[i].toStdString();
    }
    EXPECT_EQ(exiftoolTags(paths[2], ExiftoolGroups::Family1).string(QStringLiteral("ExifIFD:DateTimeOriginal")),
              QStringLiteral("2003:12:04 07:46:52"));
}

TEST_F(RatingSave, DatesAndRatingGoIntoOneSaveAndTheNextSaveFindsTheFileAsItLeftIt)
{
    importRejects();
    SaveSettings settings = defaultSettings();
    settings.writeRatingsToXMPOnSave = true;
    std::vector<qint64> lengths;
    for (const QString &path : paths)
        lengths.push_back(QFileInfo(path).size());

    // The summary before the save names the value each file takes.
    for (MySinglePic *pic : std::as_const(pics))
        PreSaveSummary::datesOf(*pic, settings);
    const PreSaveSummary summary({{}, pics, &settings});
    for (const PreSaveItem &item : summary.items())
        EXPECT_EQ(item.xmpRating, -1) << item.pic->spName.toStdString();

    const SaveOutcome first = shift(3600.0, nullptr, settings);
    const SaveOutcome second = shift(60.0, nullptr, settings);
    for (qsizetype i = 0; i < paths.size(); ++i) {
        const std::string name = paths[i].toStdString();
        EXPECT_TRUE(first.savedPics.contains(pics[i])) << name;
        EXPECT_TRUE(second.savedPics.contains(pics[i])) << name;
        EXPECT_EQ(errorIdsFor(*pics[i]), QList<int>{}) << name;
        EXPECT_FALSE(pics[i]->xmpRatingToWrite()) << name;
        EXPECT_EQ(exiftoolTags(paths[i], ExiftoolGroups::Family1).number(QStringLiteral("XMP-xmp:Rating")), -1) << name;
        EXPECT_TRUE(exiftoolWarnings(paths[i], ExiftoolCheck::Read).isEmpty()) << name;
    }
    // The packets' padding took the ratings; the file without one was rewritten by exiftool.
    EXPECT_EQ(QFileInfo(paths[0]).size(), lengths[0]);
    EXPECT_EQ(QFileInfo(paths[1]).size(), lengths[1]);
    EXPECT_NE(QFileInfo(paths[2]).size(), lengths[2]);
    EXPECT_EQ(exiftoolTags(paths[2], ExiftoolGroups::Family1).string(QStringLiteral("ExifIFD:DateTimeOriginal")),
              QStringLiteral("2003:12:04 07:47:52"));
}

TEST_F(RatingSave, AJournaledSaveOfDatesAndRatingsIsRevertedByteForByte)
{
    importRejects();
    std::vector<QByteArray> originals;
    for (const QString &path : paths)
        originals.push_back(fileBytes(path));
    QTemporaryDir journalDir;
    SaveSettings settings = defaultSettings();
    settings.writeRatingsToXMPOnSave = true;
    settings.journalPath = journalDir.filePath(QStringLiteral("saveJournal.jsonl"));

    const SaveOutcome saved = shift(3600.0, nullptr, settings);
    for (qsizetype i = 0; i < paths.size(); ++i) {
        EXPECT_TRUE(saved.savedPics.contains(pics[i])) << paths[i].toStdString();
        EXPECT_NE(fileBytes(paths[i]), originals[std::size_t(i)]) << paths[i].toStdString();
    }
    const SaveJournal::Outcome reverted = SaveJournal::revert(settings.journalPath);
    EXPECT_EQ(reverted.reverted.size(), paths.size());
    for (qsizetype i = 0; i < paths.size(); ++i)
        EXPECT_EQ(fileBytes(paths[i]), originals[std::size_t(i)]) << paths[i].toStdString();
}

} // namespace
