#include "folders/ZoneCorrection.h"

#include "core/DaylightSaving.h"
#include "core/MySinglePic.h"
#include "core/ZoneRereading.h"
#include "folders/MySingleFolder.h"

namespace orv {

namespace {

const MySingleFolder *folderOf(const MySinglePic &pic)
{
    return MySingleFolder::of(pic.bundleMasterImage ? *pic.bundleMasterImage : pic);
}

bool correctionOf(const MySinglePic &pic)
{
    const MySingleFolder *folder = folderOf(pic);
    return !folder || folder->isQuicktimeMVHDTimezoneCorrectionEnabled;
}

void rereadItem(MySinglePic &pic, const ZoneReading &reading, bool &changed)
{
    const MySingleFolder *folder = folderOf(pic);
    const int threshold = folder ? folder->perFolderImportOptions.dateComparisonThresold : 1;
    changed = ZoneRereading::rereadDates(pic, reading, threshold) || changed;
}

} // namespace

TimeZone ZoneCorrection::sourceZoneOf(const MySinglePic &pic)
{
    const MySingleFolder *folder = folderOf(pic);
    return folder ? folder->sourceTimeZoneForPic(pic).value_or(TimeZone::systemZone()) : TimeZone::systemZone();
}

TimeZone ZoneCorrection::targetZoneOf(const MySinglePic &pic)
{
    const MySingleFolder *folder = folderOf(pic);
    return folder ? folder->targetTimeZoneForPic(pic, sourceZoneOf(pic)).value_or(TimeZone::systemZone())
                  : TimeZone::systemZone();
}

bool ZoneCorrection::validateDateDifferences(MySinglePic &pic)
{
    const TimeZone source = sourceZoneOf(pic);
    return DaylightSaving::validateDateDifferencesUsingTimeZone(pic, {source, correctionOf(pic)}, targetZoneOf(pic));
}

bool ZoneCorrection::updateAllDatesAfterUpdatingTimezone(MySinglePic &pic)
{
    const TimeZone source = sourceZoneOf(pic);
    const ZoneReading reading{source, correctionOf(pic)};
    bool changed = false;
    // A choice of the other hour is undone before reading and made again only where the new
    // reading is still ambiguous.
    for (MySinglePic *member : {&pic, pic.bundleDependentImage}) {
        if (!member)
            continue;
        const qint64 choice = member->usesAltTimeAtAmbiguityReason;
        member->usesAltTimeAtAmbiguityReason = 0;
        rereadItem(*member, reading, changed);
        const TimeZone target = targetZoneOf(*member);
        changed = DaylightSaving::validateDateDifferencesUsingTimeZone(*member, reading, target) || changed;
        member->usesAltTimeAtAmbiguityReason = choice;
        if (choice != 0 && DaylightSaving::isDateSourceAmbiguousAtImport(*member)) {
            DaylightSaving::reapplyAmbiguityCorrection(*member);
            DaylightSaving::validateDateDifferencesUsingTimeZone(*member, reading, target);
        }
    }
    if (const MySingleFolder *folder = MySingleFolder::of(pic))
        pic.isUnsavedDueToTZC = MySingleFolder::validateTZCUnsavedForPic(
            pic, folder->sourceTimeZoneNameForPic(pic), folder->targetTimeZoneNameForPic(pic));
    return changed;
}

ZonePreview ZoneCorrection::preview(const MySinglePic &pic, const ZoneProvider &zones, qint64 ambiguityChoice)
{
    ZonePreview p;
    p.source = zones.sourceTimeZoneForPic(pic).value_or(TimeZone::systemZone());
    p.target = zones.targetTimeZoneForPic(pic, p.source).value_or(TimeZone::systemZone());
    const MySingleFolder *folder = folderOf(pic);
    const ZoneReading reading{p.source, correctionOf(pic)};
    const std::optional<ZoneRereading::Dates> dates =
        ZoneRereading::datesInZone(pic, reading, folder ? folder->perFolderImportOptions.dateComparisonThresold : 1);
    p.dateInSource = dates ? dates->source : pic.spDateTimeOriginal;
    if (dates)
        p.findings = DaylightSaving::checkDSTDivergence(pic, reading, dates->creation, dates->digitized,
                                                        dates->modification);
    p.isAmbiguousAtImport = p.dateInSource && DaylightSaving::hasImportAmbiguityForDate(pic, *p.dateInSource, reading);
    if (p.dateInSource && ambiguityChoice != 0 && p.isAmbiguousAtImport)
        p.dateInSource = p.dateInSource->addingSeconds(-3600.0);
    const OptionalDate modified = pic.spDateTimeModified();
    const double offset = modified && pic.spDateTimeOriginal ? modified->secondsSince(*pic.spDateTimeOriginal) : 0.0;
    p.newDate = p.dateInSource ? OptionalDate(p.dateInSource->addingSeconds(offset)) : std::nullopt;
    p.offsetDifference = DaylightSaving::checkMDTADateWithTimeZone(pic, p.source, &p.offsetSpecialCase);
    if (p.offsetDifference == 0.0)
        p.offsetDifference = DaylightSaving::checkEXOFTimeWithTimeZone(pic, p.source, &p.offsetSpecialCase);
    p.gpsDifference = pic.differenceFromGPSDate(pic.spGpsUTCDate, p.dateInSource);
    p.isAmbiguousAtExport =
        p.newDate && DaylightSaving::hasDSTAmbiguityForDate(pic, *p.newDate, 0, {p.target, reading.movieHeaderCorrection});
    return p;
}

QList<MySinglePic *> ZoneCorrection::setTimeZones(MySingleFolder &folder, const FolderTimeZones &source,
                                                  const FolderTimeZones &target)
{
    QList<std::optional<TimeZone>> sourcesBefore;
    for (const MySinglePic *pic : std::as_const(folder.sfPicDetails_fullArray))
        sourcesBefore.append(folder.sourceTimeZoneForPic(*pic));
    folder.sourceTimeZones = source;
    folder.targetTimeZones = target;
    QList<MySinglePic *> changed;
    for (qsizetype i = 0; i < folder.sfPicDetails_fullArray.size(); ++i) {
        MySinglePic *pic = folder.sfPicDetails_fullArray[i];
        if (folder.sourceTimeZoneForPic(*pic) != sourcesBefore[i]) {
            if (updateAllDatesAfterUpdatingTimezone(*pic))
                changed.append(pic);
        } else {
            validateDateDifferences(*pic);
        }
    }
    folder.validateTZCUnsaved();
    folder.sfUpdatePicsFromAndTill();
    return changed;
}

int ZoneCorrection::updateEveryFileDate(const QList<MySingleFolder *> &folders)
{
    int changed = 0;
    for (MySingleFolder *folder : folders) {
        if (folder->isEXIFIgnored())
            continue;
        for (MySinglePic *pic : std::as_const(folder->sfPicDetails_fullArray))
            changed += updateAllDatesAfterUpdatingTimezone(*pic) ? 1 : 0;
        folder->validateTZCUnsaved();
        folder->sfUpdatePicsFromAndTill();
    }
    return changed;
}

} // namespace orv
