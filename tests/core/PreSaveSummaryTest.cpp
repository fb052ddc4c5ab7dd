// What the summary says a save will write is what the save writes, as exiftool reads it back:
// every date slot, the GPS time under both GPS rules, and the file's own date.

#include "core/PreSaveSummary.h"
#include "core/SaveSettings.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"

#include <QDateTime>
#include <QFileInfo>
#include <QTimeZone>

using namespace orv;
using namespace orv::test;

namespace {

class PreSaveSummaryRules : public SaveFixture
{
protected:
    // A photo whose modify date is half an hour after its capture and whose GPS fix was taken
    // two hours before it in UTC; shifted by an hour, the summary taken before the save.
    std::map<SavedDate::Slot, SavedDate> predictAndSave(const SaveSettings &settings)
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        tags.dateTime = Stamp::text("2024:05:01 10:30:00");
        tags.gps = GpsShape::fixAt(48.8584, 2.2945, "2024:05:01 08:00:00");
        MySinglePic &pic = import(buildJpeg({.exif = tags}));
        path = pic.spPath();
        folder.setSfDateModificationsFromTimeInterval(3600, false);
        std::map<SavedDate::Slot, SavedDate> predicted;
        for (const SavedDate &date : PreSaveSummary::datesOf(pic, settings))
            predicted.emplace(date.slot, date);
        const SaveOutcome outcome = shift(3600, nullptr, settings);
        EXPECT_TRUE(outcome.savedPics.contains(&pic));
        return predicted;
    }

    // "2024:05:01 11:00:00" as the file holds it, in the zone the stamps are read in.
    static QString exifStamp(const OptionalDate &date, const QTimeZone &zone)
    {
        return QDateTime::fromSecsSinceEpoch(qint64(date->wholeSeconds()), zone).toString(QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    }

    void expectWritten(const std::map<SavedDate::Slot, SavedDate> &predicted)
    {
        const ExiftoolTags tags = exiftoolTags(path);
        const QTimeZone local = QTimeZone::systemTimeZone();
        EXPECT_EQ(tags.string(QStringLiteral("EXIF:DateTimeOriginal")), exifStamp(predicted.at(SavedDate::Capture).newDate, local));
        EXPECT_EQ(tags.string(QStringLiteral("EXIF:ModifyDate")), exifStamp(predicted.at(SavedDate::Modify).newDate, local));
        EXPECT_EQ(tags.string(QStringLiteral("EXIF:GPSDateStamp")) + u' ' + tags.string(QStringLiteral("EXIF:GPSTimeStamp")),
                  exifStamp(predicted.at(SavedDate::GpsTime).newDate, QTimeZone::utc()));
        EXPECT_EQ(QFileInfo(path).lastModified().toSecsSinceEpoch(),
                  qint64(predicted.at(SavedDate::FileDate).newDate->wholeSeconds()));
    }

    QString path;
};

} // namespace

TEST_F(PreSaveSummaryRules, AnOlderModifyDateFollowsTheCaptureAndTheGpsTimeMovesWithTheClock)
{
    const auto predicted = predictAndSave(defaultSettings());

    EXPECT_EQ(predicted.at(SavedDate::Capture).rule, SavedDate::MovesWithItem);
    EXPECT_EQ(predicted.at(SavedDate::Modify).rule, SavedDate::FollowsCaptureDate);
    EXPECT_EQ(predicted.at(SavedDate::Modify).newDate, predicted.at(SavedDate::Capture).newDate);
    EXPECT_EQ(predicted.at(SavedDate::GpsTime).rule, SavedDate::MovesWithClock);
    EXPECT_EQ(predicted.at(SavedDate::GpsTime).newDate->secondsSince(*predicted.at(SavedDate::GpsTime).oldDate), 3600);
    EXPECT_EQ(predicted.at(SavedDate::FileDate).rule, SavedDate::SetBySave);
    expectWritten(predicted);
}

TEST_F(PreSaveSummaryRules, WithoutTheClockRuleTheGpsTimeTakesTheNewCaptureDate)
{
    SaveSettings settings = defaultSettings();
    settings.syncGPSDataOnSaveType = false;
    const auto predicted = predictAndSave(settings);

    EXPECT_EQ(predicted.at(SavedDate::GpsTime).rule, SavedDate::TakesCaptureDate);
    EXPECT_EQ(predicted.at(SavedDate::GpsTime).newDate, predicted.at(SavedDate::Capture).newDate);
    expectWritten(predicted);
}
