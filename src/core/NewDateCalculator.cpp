#include "core/NewDateCalculator.h"

#include "core/DaylightSaving.h"
#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "time/DateStampCodec.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

namespace orv {

namespace {

// --- Date arithmetic ---------------------------------------------------------------------------
// Dates count as equal in whole seconds. A missing date is never near another one, never later
// than another one, and gives way to any date in later().

double secondsApart(OptionalDate a, OptionalDate b)
{
    if (!a || !b)
        return std::numeric_limits<double>::infinity();
    return std::fabs(a->wholeSeconds() - b->wholeSeconds());
}

bool isLater(OptionalDate a, OptionalDate b)
{
    return a && (!b || a->wholeSeconds() > b->wholeSeconds());
}

OptionalDate later(OptionalDate a, OptionalDate b)
{
    return isLater(b, a) ? b : a;
}

bool isSameDate(OptionalDate a, OptionalDate b)
{
    if (!a || !b)
        return !a && !b;
    return a->wholeSeconds() == b->wholeSeconds();
}

OptionalDate firstOf(OptionalDate a, OptionalDate b)
{
    return a ? a : b;
}

// The date moved as far as "from" moved to "to".
OptionalDate movedAlong(OptionalDate date, OptionalDate from, OptionalDate to)
{
    if (!date || !from || !to)
        return std::nullopt;
    return date->addingSeconds(to->secondsSince(*from));
}

OptionalDate cleaned(OptionalDate date)
{
    return date ? OptionalDate(cleanDate(*date)) : std::nullopt;
}

bool isRealDate(OptionalDate date)
{
    return date && !date->isSentinel();
}

// --- The option tables -------------------------------------------------------------------------

// The NEW values of one item from its target date T, its source date S, the reference
// modification date M and "now" N, by the option tables of the three kinds of file.
class NewDateRules
{
public:
    NewDateRules(MySinglePic &pic, const NewDateOptions &options, Instant now, bool isLocationOnly)
        : m_pic(pic), m_options(options), m_target(pic.spDateTimeModified_tempFIX),
          m_source(pic.spDateTimeOriginal),
          // A modification date before the creation date is taken as equal to it.
          m_modification(pic.normalizationType & NormalizationFileDates
                             ? pic.fileCreationDateOLD
                             : pic.fileModificationDateOLD),
          m_now(now), m_threshold(options.dateComparisonThresold), m_isLocationOnly(isLocationOnly)
    {
    }

    // Files without date tags (spType 11, 12, 14).
    void applyWithoutTags()
    {
        m_pic.fileCreationDateNEW = m_target;
        switch (m_options.dateChangeNoEXIFFinderModDate) {
        case 0:
            m_pic.fileModificationDateNEW = m_target;
            break;
        case 1:
            m_pic.fileModificationDateNEW = later(m_now, m_pic.fileCreationDateNEW);
            break;
        case 2:
            m_pic.fileModificationDateNEW =
                m_options.dateChangeNoEXIFFinderModDateUnchangedOption &&
                        isNear(m_modification, m_source)
                    ? m_target
                    : later(m_modification, m_pic.fileCreationDateNEW);
            break;
        case 3:
            m_pic.fileModificationDateNEW =
                later(movedAlong(m_modification, m_source, m_target), m_pic.fileCreationDateNEW);
            break;
        default:
            break;
        }
    }

    // Files whose own creation date is preferred over their metadata (spType 4, 18).
    void applyPreferringFileDate()
    {
        m_pic.fileCreationDateNEW = m_target;
        switch (m_options.dateChangeNoEXIFButTIFFMetaModDate) {
        case 0:
            m_pic.tiffDateTimeNEW = cleaned(m_target);
            break;
        case 1:
            m_pic.tiffDateTimeNEW = later(m_now, m_target);
            break;
        case 2:
            m_pic.tiffDateTimeNEW = later(m_pic.tiffDateTimeOLD, m_target);
            break;
        case 3:
            m_pic.tiffDateTimeNEW = movedAlong(m_pic.tiffDateTimeOLD, m_source, m_target);
            break;
        default:
            break;
        }
        switch (m_options.dateChangeNoEXIFButTIFFFinderModDate) {
        case 0:
            m_pic.fileModificationDateNEW = m_pic.tiffDateTimeNEW;
            break;
        case 1:
            m_pic.fileModificationDateNEW = later(m_now, m_target);
            break;
        case 2:
            m_pic.fileModificationDateNEW = keptModificationBesideTiff();
            break;
        default:
            break;
        }
    }

    // Files with date tags (all other types).
    void applyWithTags()
    {
        applyCreationAndDigitized();
        applyTiff();
        applyFileDatesAfterTags();
    }

private:
    bool isNear(OptionalDate a, OptionalDate b) const { return secondsApart(a, b) <= m_threshold; }

    // A file modification date that stood at the source date or at the TIFF date goes on
    // standing there; any other is kept unless the target passes it.
    OptionalDate keptModificationBesideTiff() const
    {
        const bool nearSource = isNear(m_modification, m_source);
        const bool nearTiff = isNear(m_modification, m_pic.tiffDateTimeOLD);
        if (m_options.dateChangeNoEXIFButTIFFFinderModDateUnchangedOption) {
            if (nearSource && !nearTiff)
                return m_target;
            if (nearTiff && !isSameDate(m_pic.tiffDateTimeNEW, m_pic.tiffDateTimeOLD))
                return m_pic.tiffDateTimeNEW;
        }
        return later(m_modification, m_target);
    }

    void applyCreationAndDigitized()
    {
        int digitizedOption = m_options.dateChangeEXIFEXIFDigiDate;
        int digitizedUnchangedOption = m_options.dateChangeEXIFEXIFDigiDateUnchangedOption;
        // A new location alone must not pull the digitized date along.
        if (m_isLocationOnly && m_options.dateChangeTypeAtLocationOnlyChanges == 3) {
            digitizedOption = 1;
            digitizedUnchangedOption = 0;
        }

        m_pic.exifDateTimeOriginalNEW = m_pic.exifDateTimeOriginalOLD ? m_target : std::nullopt;
        const OptionalDate digitizedOLD = m_pic.exifDateTimeDigitizedOLD;
        const OptionalDate originalNEW = m_pic.exifDateTimeOriginalNEW;
        if (!digitizedOLD) {
            m_pic.exifDateTimeDigitizedNEW = std::nullopt;
            return;
        }
        if (!m_pic.exifDateTimeOriginalOLD) {
            m_pic.exifDateTimeDigitizedNEW = m_target;
            return;
        }
        switch (digitizedOption) {
        case 0:
            m_pic.exifDateTimeDigitizedNEW = m_target;
            break;
        case 1:
            m_pic.exifDateTimeDigitizedNEW =
                digitizedUnchangedOption && isNear(digitizedOLD, m_source)
                    ? m_target
                    : later(digitizedOLD, originalNEW);
            break;
        case 3:
            m_pic.exifDateTimeDigitizedNEW =
                later(movedAlong(digitizedOLD, m_source, originalNEW), originalNEW);
            break;
        default:
            break; // the slot keeps what the last calculation gave it
        }
    }

    void applyTiff()
    {
        const OptionalDate tiffOLD = m_pic.tiffDateTimeOLD;
        const OptionalDate newestMetadata =
            firstOf(m_pic.exifDateTimeDigitizedNEW, m_pic.exifDateTimeOriginalNEW);
        if (!tiffOLD) {
            m_pic.tiffDateTimeNEW = std::nullopt;
            return;
        }
        if (!m_pic.exifDateTimeOriginalOLD && !m_pic.exifDateTimeDigitizedOLD) {
            m_pic.tiffDateTimeNEW = m_target;
            return;
        }
        switch (m_options.dateChangeEXIFEXIFModDate) {
        case 0:
            m_pic.tiffDateTimeNEW = newestMetadata;
            break;
        case 1:
            m_pic.tiffDateTimeNEW = keptTiff(newestMetadata);
            break;
        case 2:
            m_pic.tiffDateTimeNEW = later(newestMetadata, m_now);
            break;
        case 3:
            m_pic.tiffDateTimeNEW = later(movedAlong(tiffOLD, m_source, m_target), newestMetadata);
            break;
        default:
            break;
        }
    }

    // A TIFF date that stood at the date it was written beside goes along with that date's
    // change; otherwise it stays unless the newest metadata date passes it.
    OptionalDate keptTiff(OptionalDate newestMetadata) const
    {
        if (m_options.dateChangeEXIFEXIFModDateUnchangedOption) {
            const auto [reference, referenceNEW] =
                m_pic.exifDateTimeDigitizedOLD
                    ? std::pair(m_pic.exifDateTimeDigitizedOLD, m_pic.exifDateTimeDigitizedNEW)
                    : std::pair(m_pic.exifDateTimeOriginalOLD, m_target);
            if (!isSameDate(reference, referenceNEW) && isNear(m_pic.tiffDateTimeOLD, reference))
                return referenceNEW;
        }
        return later(m_pic.tiffDateTimeOLD, newestMetadata);
    }

    void applyFileDatesAfterTags()
    {
        if (m_options.dateChangeEXIFChangeFinderWhenChangingEXIF == 0) {
            m_pic.fileCreationDateNEW = m_pic.fileCreationDateOLD;
            m_pic.fileModificationDateNEW = m_modification;
            return;
        }
        const OptionalDate digitizedOrTarget = firstOf(m_pic.exifDateTimeDigitizedNEW, m_target);
        switch (m_options.dateChangeEXIFFinderCreaDate2) {
        case 0:
            m_pic.fileCreationDateNEW = m_target;
            break;
        case 1:
            m_pic.fileCreationDateNEW = digitizedOrTarget;
            break;
        default:
            m_pic.fileCreationDateNEW = firstOf(m_pic.tiffDateTimeNEW, digitizedOrTarget);
            break;
        }

        const OptionalDate keptOrLater = later(m_modification, m_pic.fileCreationDateNEW);
        switch (m_options.dateChangeEXIFFinderModDate) {
        case 0:
            if (m_pic.tiffDateTimeNEW)
                m_pic.fileModificationDateNEW = m_pic.tiffDateTimeNEW;
            else if (m_options.dateChangeEXIFFinderModDateEXIFModDateOptions == 0)
                m_pic.fileModificationDateNEW =
                    firstOf(m_pic.exifDateTimeDigitizedNEW, m_pic.exifDateTimeOriginalNEW);
            else if (m_options.dateChangeEXIFFinderModDateEXIFModDateOptions == 1)
                m_pic.fileModificationDateNEW =
                    m_options.dateChangeEXIFFinderModDateEXIFModDateUnchangedOption
                        ? keptModification()
                        : keptOrLater;
            else
                m_pic.fileModificationDateNEW = later(m_target, m_now);
            break;
        case 1:
            m_pic.fileModificationDateNEW = m_options.dateChangeEXIFFinderModDateUnchangedOption
                                                ? keptModification()
                                                : keptOrLater;
            break;
        case 2:
            m_pic.fileModificationDateNEW = later(m_target, m_now);
            break;
        default:
            break;
        }
    }

    // The file modification date under "keep": one that stood at the file creation date or at
    // the item's reference metadata date follows that date's change; one that stood apart from
    // both stays unless the new creation date passes it.
    OptionalDate keptModification() const
    {
        const auto [reference, referenceNEW] =
            m_pic.tiffDateTimeOLD ? std::pair(m_pic.tiffDateTimeOLD, m_pic.tiffDateTimeNEW)
            : m_pic.exifDateTimeDigitizedOLD
                ? std::pair(m_pic.exifDateTimeDigitizedOLD, m_pic.exifDateTimeDigitizedNEW)
                : std::pair(m_source, m_target);
        const double fromCreation = secondsApart(m_modification, m_pic.fileCreationDateOLD);
        const double fromReference = secondsApart(m_modification, reference);
        const OptionalDate keptOrLater = later(m_modification, m_pic.fileCreationDateNEW);
        if (fromCreation > m_threshold && fromReference > m_threshold)
            return keptOrLater;

        const bool followsReference = fromCreation <= m_threshold && fromReference <= m_threshold
                                          ? isLater(referenceNEW, m_pic.fileCreationDateNEW)
                                          : fromReference <= m_threshold;
        if (followsReference)
            return fromReference > 0 && isSameDate(reference, referenceNEW) ? keptOrLater
                                                                            : referenceNEW;
        return fromCreation > 0 && isSameDate(m_pic.fileCreationDateOLD, m_pic.fileCreationDateNEW)
                   ? keptOrLater
                   : m_pic.fileCreationDateNEW;
    }

    MySinglePic &m_pic;
    const NewDateOptions &m_options;
    const OptionalDate m_target;
    const OptionalDate m_source;
    const OptionalDate m_modification;
    const OptionalDate m_now;
    const double m_threshold;
    const bool m_isLocationOnly;
};

// --- Taking part -------------------------------------------------------------------------------

// The previews bar shows each group at the time of its sortPic. The item that is the sortPic
// takes that time; the other member moves by the same amount from its own date.
OptionalDate liveTime(const MySinglePic &pic)
{
    const MySinglePic &owner = pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
    if (!owner.tempTimeDuringLiveMod)
        return std::nullopt;
    if (owner.sortPic() == &pic)
        return owner.tempTimeDuringLiveMod;
    const OptionalDate present = pic.spDateTimeModified();
    return present ? OptionalDate(present->addingSeconds(owner.tempMoveDateByDuringLiveMod))
                   : std::nullopt;
}

bool isLocationOnlyChange(const MySinglePic &pic, const NewDateOptions &options)
{
    return pic.hasLocationChangeIgnoringSpecialCases(options.addRawLocationsOnlyInSidecars) &&
           options.dateChangeTypeAtLocationOnlyChanges != 1 && !pic.hasXmpSidecar();
}

bool isWithoutTags(int type)
{
    return type == SpTypeNoTagsFileDate || type == SpTypeNoTagsImportOptionDate ||
           type == SpTypeMovieFileDate;
}

} // namespace

Instant cleanDate(Instant date)
{
    return Instant(date.wholeSeconds());
}

void calculateNewDatesWithCachedPrefSettings(MySinglePic &pic, const NewDateOptions *cachedOrNull,
                                             const NewDateContext &context)
{
    if (!cachedOrNull && context.isSavingInProgress)
        return;
    const NewDateOptions &options = cachedOrNull ? *cachedOrNull : context.preferences;
    MySinglePic *dependent = pic.bundleDependentImage;

    bool isForced = !cachedOrNull && context.isAltSaveButtonEnabled && context.selectedFolder &&
                    context.selectedFolder == pic.spSingleFolder;
    int type = pic.spType;
    if (pic.shouldAddExifDateTimeTags) {
        if (prepareExifDateTimeAddition(pic)) {
            pic.spDateTimeOriginal = pic.exifDateTimeOriginalOLD;
            type = SpTypeExifOriginal;
        }
        isForced = true;
    }

    pic.spDateTimeModified_tempFIX = pic.spDateTimeModified();
    if (context.isLiveDragInPreviews) {
        if (const OptionalDate live = liveTime(pic)) {
            pic.spDateTimeModified_tempFIX = live;
            isForced = true;
        }
    }

    const bool takesPart = isForced ||
                           (cachedOrNull && (pic.shouldAddExifDateTimeTags ||
                                             options.isSavingPhotosWithoutDateChangesEnabled)) ||
                           pic.isThisTimeUnsaved() || pic.isThisHarmonizationChanged();
    const bool isLocationOnly = !takesPart && isLocationOnlyChange(pic, options);
    if (!takesPart && !isLocationOnly) {
        afterCalculationSetNewToOldWith(pic, cachedOrNull);
        if (cachedOrNull && dependent)
            calculateNewDatesWithCachedPrefSettings(*dependent, cachedOrNull, context);
        return;
    }
    if (cachedOrNull)
        pic.isAffectedBySave = true;

    const Instant now = cachedOrNull ? cachedOrNull->nowDate : Instant::distantFuture();
    NewDateRules rules(pic, options, now, isLocationOnly);
    const bool isPreferringFileDate =
        type == SpTypeFileDatePreferredOverTiff || type == SpTypeFileDatePreferredOverMvhd;
    // A movie without dates and a file that prefers its own date leave their dependent alone.
    const bool isDependentFirst = cachedOrNull && dependent && type != SpTypeMovieFileDate &&
                                  !isPreferringFileDate;
    if (isDependentFirst)
        calculateNewDatesWithCachedPrefSettings(*dependent, cachedOrNull, context);

    if (isWithoutTags(type))
        rules.applyWithoutTags();
    else if (isPreferringFileDate)
        rules.applyPreferringFileDate();
    else
        rules.applyWithTags();
    cleanupExifDateTimeAddition(pic);
}

void afterCalculationSetNewToOldWith(MySinglePic &pic, const NewDateOptions *cachedOrNull)
{
    pic.exifDateTimeOriginalNEW = pic.exifDateTimeOriginalOLD;
    pic.exifDateTimeDigitizedNEW = pic.exifDateTimeDigitizedOLD;
    pic.tiffDateTimeNEW = pic.tiffDateTimeOLD;
    pic.fileCreationDateNEW = pic.fileCreationDateOLD;
    pic.fileModificationDateNEW = pic.fileModificationDateOLD;
    if (cachedOrNull)
        pic.isAffectedBySave = false;
}

bool prepareExifDateTimeAddition(MySinglePic &pic)
{
    if (!pic.shouldAddExifDateTimeTags)
        return false;
    if (pic.tagAddType == 0) {
        if (!pic.exifDateTimeOriginalOLD)
            pic.tagAddType |= TagAddExifOriginal;
        if (!pic.exifDateTimeDigitizedOLD)
            pic.tagAddType |= TagAddExifDigitized;
        if (!pic.tiffDateTimeOLD)
            pic.tagAddType |= TagAddTiffDateTime;
    }

    const quint64 bits = pic.tagAddType;
    switch (pic.spType) {
    case SpTypeNoTagsFileDate:
        pic.exifDateTimeOriginalOLD = pic.exifDateTimeDigitizedOLD =
            cleaned(pic.fileCreationDateOLD);
        pic.tiffDateTimeOLD = cleaned(pic.fileModificationDateOLD);
        break;
    case SpTypeFileDatePreferredOverTiff:
        pic.exifDateTimeOriginalOLD = pic.exifDateTimeDigitizedOLD =
            cleaned(pic.fileCreationDateOLD);
        break;
    case SpTypeTiffDateTime:
        pic.exifDateTimeOriginalOLD = pic.exifDateTimeDigitizedOLD = pic.tiffDateTimeOLD;
        break;
    default: {
        const bool addsOriginal = bits & TagAddExifOriginal;
        const bool addsDigitized = bits & TagAddExifDigitized;
        if (addsOriginal && !addsDigitized)
            pic.exifDateTimeOriginalOLD = pic.exifDateTimeDigitizedOLD;
        if (addsDigitized && !addsOriginal)
            pic.exifDateTimeDigitizedOLD = pic.exifDateTimeOriginalOLD;
        if ((bits & TagAddTiffDateTime) && !(addsOriginal && addsDigitized))
            pic.tiffDateTimeOLD = cleaned(pic.fileModificationDateOLD);
        break;
    }
    }
    return bits != 0 && isRealDate(pic.exifDateTimeOriginalOLD);
}

void cleanupExifDateTimeAddition(MySinglePic &pic)
{
    if (pic.tagAddType & TagAddExifOriginal)
        pic.exifDateTimeOriginalOLD = Instant::distantPast();
    if (pic.tagAddType & TagAddExifDigitized)
        pic.exifDateTimeDigitizedOLD = Instant::distantPast();
    if (pic.tagAddType & TagAddTiffDateTime)
        pic.tiffDateTimeOLD = Instant::distantPast();
}

void removeExifDateTimeAddition(MySinglePic &pic)
{
    pic.shouldAddExifDateTimeTags = false;
    if (pic.tagAddType & TagAddExifOriginal)
        pic.exifDateTimeOriginalOLD = pic.exifDateTimeOriginalNEW = std::nullopt;
    if (pic.tagAddType & TagAddExifDigitized)
        pic.exifDateTimeDigitizedOLD = pic.exifDateTimeDigitizedNEW = std::nullopt;
    if (pic.tagAddType & TagAddTiffDateTime)
        pic.tiffDateTimeOLD = pic.tiffDateTimeNEW = std::nullopt;
    pic.tagAddType = 0;
}

// --- Checks before a save ----------------------------------------------------------------------

namespace {

constexpr Instant movieEpoch = DateStampCodec::mvhdBaseDate();
// Real movies never come close to the movie epoch; only dates this close pay for a conversion.
constexpr double movieEpochNeighbourhood = 3624.0;

bool isMovieCorrectionEnabled(const MySinglePic &pic)
{
    return pic.spSingleFolder && pic.spSingleFolder->isQuicktimeMVHDTimezoneCorrectionEnabled;
}

// A Live Photo pair without proven identifiers is known only by its dates; the save must not
// write the two halves so far apart that the pair falls apart at the next import.
bool isLivePhotoDriftingApart(MySinglePic &pic, const SaveCheckContext &context)
{
    const MySinglePic *movie = pic.bundleDependentImage;
    if (!movie || movie->spType != SpTypeMdta || pic.isGroupHarmonized() ||
        pic.spType >= SpTypeNoTagsFileDate || pic.isLivePhotoUUIDValidated ||
        pic.sourceOffsetExifData())
        return false;
    const int xmpType = pic.sourceXmpDateType();
    if (xmpType != 0 && xmpType != 3)
        return false;
    if (!movie->exifDateTimeOriginalNEW || !pic.exifDateTimeOriginalNEW)
        return false;

    const TimeZone &zone = context.targetTimeZone;
    const qsizetype storedLength = movie->singlePicAttributes.QTMetaDate
                                       ? movie->singlePicAttributes.QTMetaDate->dateData.size()
                                       : 0;
    const int length = storedLength == 20 || storedLength == 25 ? int(storedLength) : 24;
    const OptionalDate movieDate = DateStampCodec::dateIgnoringFromMDTATimeStamp(
        QString::fromLatin1(
            DateStampCodec::mdtaDataOfLength(length, *movie->exifDateTimeOriginalNEW, zone)),
        TimeZone::utc());
    const Instant stillDate = DateStampCodec::dateFromExifData(
        DateStampCodec::exifDataFromDate(*pic.exifDateTimeOriginalNEW, zone), TimeZone::utc());
    if (!movieDate || stillDate.isDistantPast() ||
        FolderFacts::isBundlingAllowedForUtcDates(*movieDate, stillDate))
        return false;
    return !(context.lateValidateLivePhoto && context.lateValidateLivePhoto(pic));
}

// A stamp whose year is 0000 names no date a file can hold: it stays as it is while the other
// stamps move, and the user must hear of it. Stamps of zeros or blanks alone are the common
// mark of "no date" and stay silently.
bool isYearZero(QByteArrayView stamp)
{
    const auto isEmptyMark = [](char c) { return c == '0' || c == ' ' || c == ':' || c == '-' || c == 'T' || c == '\0'; };
    return stamp.startsWith("0000") && !std::all_of(stamp.begin(), stamp.end(), isEmptyMark);
}

bool hasYearZeroStamp(const MySinglePic &pic)
{
    const PicAttributes &a = pic.singlePicAttributes;
    for (const std::optional<StampRecord> *stamp : {&a.ExifDateTimeOriginal, &a.ExifDateTimeDigitized, &a.TIFFDateTime})
        if (*stamp && isYearZero((*stamp)->dateData.toByteArray()))
            return true;
    if (a.xmpDateInfos)
        for (const auto &[key, record] : *a.xmpDateInfos)
            if (isYearZero(record.data))
                return true;
    return a.IPTCDateCreated && isYearZero(a.IPTCDateCreated->dateData);
}

} // namespace

QSet<QString> checkCalculatedValuesForSaveErrors(MySinglePic &pic, const SaveCheckContext &context)
{
    QSet<QString> errors;
    if (pic.isThisTimeUnsaved() && hasYearZeroStamp(pic))
        errors.insert(QStringLiteral("error_12_yearZeroStamp"));
    const TimeZone &zone = context.targetTimeZone;

    bool isOriginalBefore1904 = false;
    bool isTiffBefore1904 = false;
    if (pic.isQtMovie()) {
        const bool isCorrected = pic.spType != SpTypeMdta && isMovieCorrectionEnabled(pic);
        auto isBeforeMovieEpoch = [&](OptionalDate date) {
            if (!date || date->secondsSince(movieEpoch) >= movieEpochNeighbourhood)
                return false;
            const Instant written =
                isCorrected ? DateStampCodec::mvhdDateFromCorrectedDate(*date, zone) : *date;
            return written.secondsSince(movieEpoch) < 1.0;
        };
        isOriginalBefore1904 = isBeforeMovieEpoch(pic.exifDateTimeOriginalNEW);
        isTiffBefore1904 = isBeforeMovieEpoch(pic.tiffDateTimeNEW);
        if (isOriginalBefore1904 || isTiffBefore1904)
            errors.insert(QStringLiteral("error_02_pre1904"));
    }

    auto isBefore1970 = [](OptionalDate date) { return date && date->secondsSinceEpoch() < 0.0; };
    if (isBefore1970(pic.fileCreationDateNEW) || isBefore1970(pic.fileModificationDateNEW))
        errors.insert(QStringLiteral("error_03_pre1970"));

    const ZoneReading target{zone, isMovieCorrectionEnabled(pic)};
    const auto isAmbiguousAtExport = [&](OptionalDate date, int type) {
        return date && DaylightSaving::hasDSTAmbiguityForDate(pic, *date, type, target);
    };
    if ((!isOriginalBefore1904 && isAmbiguousAtExport(pic.exifDateTimeOriginalNEW, 1)) ||
        isAmbiguousAtExport(pic.exifDateTimeDigitizedNEW, 2) ||
        (!isTiffBefore1904 && isAmbiguousAtExport(pic.tiffDateTimeNEW, 3)))
        errors.insert(QStringLiteral("error_01_ambiguousStamp"));

    if (isLivePhotoDriftingApart(pic, context))
        errors.insert(QStringLiteral("error_04_livePhotoDriftingApart"));
    return errors;
}

QSet<QString> checkFileUnchangedStateForSaveRenameErrors(const MySinglePic &pic)
{
    const MySinglePic &master = pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
    const bool isGroup = master.bundleDependentImage != nullptr;
    const qint64 state = isGroup ? master.bundleUnchangedState() : pic.fileUnchangedState;
    if (state == 1)
        return {isGroup ? QStringLiteral("error_07_notFound")
                        : QStringLiteral("error_05_notFound")};
    if (state == 5)
        return {isGroup ? QStringLiteral("error_11_oldVersion_group")
                        : QStringLiteral("error_11_oldVersion_file")};
    if (state > 1)
        return {isGroup ? QStringLiteral("error_08_modifiedAfterImport")
                        : QStringLiteral("error_06_modifiedAfterImport")};
    return {};
}

} // namespace orv
