#include "core/MySinglePic.h"

#include "core/FolderFacts.h"
#include "core/IptcDates.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace orv {

std::atomic<quint32> MySinglePic::s_sessionCounter{0};

MySinglePic::MySinglePic(const QString &name, FolderFacts *folder, int type, OptionalDate date)
    : spName(name),
      spSingleFolder(folder),
      spDateTimeOriginal(date),
      sessionUniqueId(s_sessionCounter.fetch_add(1)),
      spType(type)
{
}

QStringView MySinglePic::spBaseName() const
{
    const qsizetype dot = spName.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? QStringView(spName).left(dot) : QStringView(spName);
}

namespace {

const QString &gearPart(const std::shared_ptr<const CameraGear> &gear, QString CameraGear::*part)
{
    static const QString none;
    return gear ? (*gear).*part : none;
}

} // namespace

const QString &MySinglePic::pivBodySn() const { return gearPart(pivGear, &CameraGear::pivBodySn); }
const QString &MySinglePic::pivMakeModelLens() const { return gearPart(pivGear, &CameraGear::pivMakeModelLens); }
const QString &MySinglePic::lensSn() const { return gearPart(pivGear, &CameraGear::lensSn); }

QString MySinglePic::spPath() const
{
    return spSingleFolder ? QDir(spSingleFolder->sfFolderPath).filePath(spName) : spName;
}

QStringList MySinglePic::spSidecarPaths() const
{
    const QDir folder = spSingleFolder ? QDir(spSingleFolder->sfFolderPath) : QDir();
    QStringList paths;
    for (const QString &extension : spSidecarExtensions) {
        if (extension == isXmpMaster)
            paths.append(spXMPPath());
        else
            paths.append(folder.filePath(spBaseName().toString() + QLatin1Char('.') + extension));
    }
    return paths;
}

namespace {

bool isXmpExtension(const QString &extension)
{
    return extension.compare(QLatin1String("xmp"), Qt::CaseInsensitive) == 0;
}

} // namespace

void MySinglePic::addSidecarExtension(const QString &extension)
{
    if (bundleMasterImage && isXmpExtension(extension)) {
        bundleMasterImage->addSidecarExtension(extension);
        spSidecarExtensions = {isXmpMaster};
        return;
    }
    if (spSidecarExtensions.contains(extension, Qt::CaseInsensitive))
        return;
    spSidecarExtensions.append(extension);
    QCollator collator;
    collator.setNumericMode(true);
    std::sort(spSidecarExtensions.begin(), spSidecarExtensions.end(), collator);
}

QStringList MySinglePic::spSidecarFiles() const
{
    if (spSidecarExtensions.isEmpty())
        return {};
    if (bundleDependentImage && spSidecarExtensions.size() == 1)
        return {bundleDependentImage->spName};
    if (spSidecarExtensions.first() == isXmpMaster)
        return {QFileInfo(spXMPPath()).fileName()};
    QStringList names;
    for (const QString &extension : spSidecarExtensions)
        names.append(spBaseName().toString() + QLatin1Char('.') + extension);
    return names;
}

QString MySinglePic::spXMPPath() const
{
    const MySinglePic *owner = this;
    if (bundleMasterImage) {
        if (!spSidecarExtensions.contains(isXmpMaster))
            return {};
        owner = bundleMasterImage;
    } else if (bundleDependentImage && bundleDependentImage->spSidecarExtensions.contains(isXmpMaster)) {
        return {};
    }
    const auto xmp = std::find_if(owner->spSidecarExtensions.cbegin(), owner->spSidecarExtensions.cend(),
                                  isXmpExtension);
    if (xmp == owner->spSidecarExtensions.cend())
        return {};
    const QDir folder = spSingleFolder ? QDir(spSingleFolder->sfFolderPath) : QDir();
    return folder.filePath(spBaseName().toString() + QLatin1Char('.') + *xmp);
}

OptionalDate MySinglePic::singlePicModeDate() const
{
    if (singlePicModification == 0.0 || !spDateTimeOriginal)
        return std::nullopt;
    return spDateTimeOriginal->addingSeconds(singlePicModification);
}

OptionalDate MySinglePic::spDateTimeModified() const
{
    if (bundleMasterImage && !isMovie() && bundleMasterImage->isGroupHarmonized())
        return bundleMasterImage->spDateTimeModified();
    if (!takesEdits() || !spSingleFolder || !spDateTimeOriginal)
        return spDateTimeOriginal;
    if (spSingleFolder->sfEditMode == FolderFacts::EditSeparately) {
        const OptionalDate modeDate = singlePicModeDate();
        return modeDate ? modeDate : spDateTimeOriginal;
    }
    const double interval = spSingleFolder->sfDateModificationsTimeInterval;
    return interval != 0.0 ? spDateTimeOriginal->addingSeconds(interval) : spDateTimeOriginal;
}

const MySinglePic *MySinglePic::sortPic() const
{
    if (bundleDependentImage && bundleDependentImage->isMovie() && spSingleFolder
        && spSingleFolder->sortFolderLPsByMov())
        return bundleDependentImage;
    return this;
}

bool MySinglePic::hasBundleSaveError() const
{
    return hasSaveError() || (bundleDependentImage && bundleDependentImage->hasSaveError());
}

bool MySinglePic::isThisUnsaved(bool ignoringSaveError, bool ignoringImportOptionChanges) const
{
    if (hasSaveError() && !ignoringSaveError)
        return true;
    if (isUnsavedDueToTZC)
        return true;
    if (hasImportOptionChanges() && !ignoringImportOptionChanges)
        return true;
    if (isThisPureTimeUnsaved())
        return true;
    return hasLocationChange() || shouldAddExifDateTimeTags;
}

bool MySinglePic::isUnsavedIgnoringSaveError(bool ignoringSaveError,
                                             bool ignoringImportOptionChanges) const
{
    if (isThisUnsaved(ignoringSaveError, ignoringImportOptionChanges))
        return true;
    if (bundleDependentImage
        && bundleDependentImage->isThisUnsaved(ignoringSaveError, ignoringImportOptionChanges))
        return true;
    return bundleMasterImage
           && bundleMasterImage->isThisUnsaved(ignoringSaveError, ignoringImportOptionChanges);
}

bool MySinglePic::isThisPureTimeUnsaved() const
{
    if (!spSingleFolder)
        return false;
    if (spSingleFolder->sfEditMode == FolderFacts::EditSeparately)
        return singlePicModification != 0.0;
    return spSingleFolder->sfEditMode == FolderFacts::EditTogether
           && spSingleFolder->sfDateModificationsTimeInterval != 0.0;
}

bool MySinglePic::isThisTimeUnsaved() const
{
    return hasSaveErrorTime() || isUnsavedDueToTZC || hasImportOptionChanges()
           || isThisPureTimeUnsaved() || isThisHarmonizationChanged()
           || (shouldAddExifDateTimeTags && !didAddExifDateTimeTags);
}

bool MySinglePic::isThisHarmonizationChanged() const
{
    if (!isGroupHarmonized())
        return false;
    const OptionalDate mine = spDateTimeModified();
    const OptionalDate theirs = bundleDependentImage->spDateTimeOriginal;
    return mine && theirs && mine->wholeSeconds() != theirs->wholeSeconds();
}

namespace {

// The stars between mean neutral here, as an import reads them: they stay as they are.
int heldRating(const MySinglePic &pic)
{
    return pic.fileRating && (*pic.fileRating == 5 || *pic.fileRating == -1) ? *pic.fileRating : 0;
}

// The group's rating as its files gave it: a keeper or a reject of either file wins over
// neutral, and keeper over reject, as the import joins them.
int heldGroupRating(const MySinglePic &master)
{
    const int own = heldRating(master);
    const int dependent = master.bundleDependentImage ? heldRating(*master.bundleDependentImage) : 0;
    if (own == 5 || dependent == 5)
        return 5;
    return own == -1 || dependent == -1 ? -1 : 0;
}

} // namespace

std::optional<int> MySinglePic::xmpRatingToWrite() const
{
    if (bundleMasterImage && isMovie())
        return std::nullopt;
    const MySinglePic &master = bundleMasterImage ? *bundleMasterImage : *this;
    const int wanted = master.isKeeper ? 5 : master.isRejected ? -1 : 0;
    if (wanted == heldGroupRating(master) || wanted == heldRating(*this))
        return std::nullopt;
    return wanted;
}

std::optional<int> MySinglePic::groupXmpRatingToWrite() const
{
    if (const std::optional<int> own = xmpRatingToWrite())
        return own;
    return bundleDependentImage ? bundleDependentImage->xmpRatingToWrite() : std::nullopt;
}

std::pair<int, quint32> MySinglePic::xmpPacketSearch() const
{
    const PicAttributes &a = singlePicAttributes;
    if (a.cr3XmpOffset)
        return {Cr3XmpFormat, a.cr3XmpOffset};
    return {fileFormatType, a.xmpHeaderStartOffset ? a.xmpHeaderStartOffset : tiffHeaderStartOffset};
}

bool MySinglePic::hasLocationChange() const
{
    if (shouldReSaveLoc)
        return true;
    const bool masterCarriesChange = bundleMasterImage && bundleMasterImage->gpsLatOld && gpsLat;
    if (!gpsLatOld && !masterCarriesChange && hasAddedLocation == 0)
        return newLocationHAccuracy != notSetAccuracy;
    return true;
}

void MySinglePic::takeSavedLocation()
{
    gpsLatOld.reset();
    gpsLongOld.reset();
    hasAddedLocation = 0;
    shouldReSaveLoc = false;
    newLocationHAccuracy = notSetAccuracy;
    newLocationAltitude = notSetAccuracy;
    // The track's place is the file's now: letting go of the track leaves it there.
    if (!locAddedByTrackKey.isEmpty()) {
        lastSave_locAddedByTrackKey = locAddedByTrackKey;
        locationBeforeTrack = std::make_unique<PicLocation>(PicLocation::of(*this));
    }
}

namespace {

double roundedTo(double value, int digits)
{
    const double scale = std::pow(10.0, digits);
    return std::round(value * scale) / scale;
}

} // namespace

void MySinglePic::takeNewLocation(double latitude, double longitude, double altitude, double accuracy,
                                  qint8 addedBy)
{
    if (!gpsLatOld && gpsLat && gpsLong) {
        gpsLatOld = gpsLat;
        gpsLongOld = gpsLong;
    }
    const auto rounding = needsLocRounding();
    gpsLat = rounding ? roundedTo(latitude, rounding->latitudeDigits) : latitude;
    gpsLong = rounding ? roundedTo(longitude, rounding->longitudeDigits) : longitude;
    hasAddedLocation = addedBy;
    newLocationAltitude = altitude;
    newLocationHAccuracy = accuracy;
}

PicLocation PicLocation::of(const MySinglePic &pic)
{
    return {pic.gpsLat,           pic.gpsLong, pic.gpsLatOld, pic.gpsLongOld, pic.newLocationHAccuracy,
            pic.newLocationAltitude, pic.hasAddedLocation};
}

void PicLocation::applyTo(MySinglePic &pic) const
{
    pic.gpsLat = gpsLat;
    pic.gpsLong = gpsLong;
    pic.gpsLatOld = gpsLatOld;
    pic.gpsLongOld = gpsLongOld;
    pic.newLocationHAccuracy = newLocationHAccuracy;
    pic.newLocationAltitude = newLocationAltitude;
    pic.hasAddedLocation = hasAddedLocation;
}

std::optional<MySinglePic::LocRounding> MySinglePic::needsLocRounding() const
{
    // A text with room for the usual five digits takes the place as it is.
    const std::vector<QtLocationRecord> &records = singlePicAttributes.qtLocations;
    if (!isMovie() || records.empty())
        return std::nullopt;
    const QtLocationRecord &first = records.front();
    if (first.frac1 >= 5 && first.frac2 >= 5)
        return std::nullopt;
    return LocRounding{first.frac1, first.frac2};
}

bool MySinglePic::hasLocationChangeIgnoringSpecialCases(bool addRawLocationsOnlyInSidecars) const
{
    if (isRaw() && hasAddedLocation && addRawLocationsOnlyInSidecars)
        return false;
    return hasLocationChange();
}

bool MySinglePic::isGroupHarmonized() const
{
    if (!bundleDependentImage || bundleDependentImage->isMovie() || !spSingleFolder)
        return false;
    if (!spDateTimeOriginal || !bundleDependentImage->spDateTimeOriginal)
        return false;
    const double difference =
        std::fabs(spDateTimeOriginal->secondsSince(*bundleDependentImage->spDateTimeOriginal));
    switch (spSingleFolder->harmonizingRawJpgsType) {
    case 1:
        return difference > 300.0;
    case 2:
        return difference > 1.0;
    default:
        return false;
    }
}

bool MySinglePic::validateGroupDeviations()
{
    if (!bundleDependentImage)
        return false;
    if (!bundleDependentImage->isMovie() && spSingleFolder && spSingleFolder->harmonizingRawJpgsType > 0) {
        majorDateDifferenceType |= MajorDifferenceGroupDates;
        if (isGroupHarmonized())
            return false;
    }
    const OptionalDate mine = spDateTimeOriginal;
    const OptionalDate theirs = bundleDependentImage->spDateTimeOriginal;
    const double difference = mine && theirs ? std::trunc(std::fabs(mine->secondsSince(*theirs))) : 0.0;
    if (difference < 301.0) {
        majorDateDifferenceType &= ~quint64(MajorDifferenceGroupDates);
        return false;
    }
    majorDateDifferenceType |= MajorDifferenceGroupDates;
    return isDataSourceLocal() != bundleDependentImage->isDataSourceLocal();
}

namespace {

// Tag names under which an XMP packet may carry each date slot, in the order they are preferred.
const std::initializer_list<const char *> xmpCreationTags = {"PhotoshopDateCreated", "ExifDateTimeOriginal"};
const std::initializer_list<const char *> xmpDigitizedTags = {"XmpCreateDate", "ExifDateTimeDigitized"};
const std::initializer_list<const char *> xmpModificationTags = {"XmpModifyDate", "TiffDateTime"};

const XmpStampRecord *xmpStamp(const PicAttributes &a, std::initializer_list<const char *> tags)
{
    if (!a.xmpDateInfos)
        return nullptr;
    for (const char *tag : tags) {
        const auto it = a.xmpDateInfos->find(QLatin1String(tag));
        if (it != a.xmpDateInfos->end())
            return &it->second;
    }
    return nullptr;
}

bool isLocalXmpStamp(const XmpStampRecord *stamp)
{
    return !stamp || stamp->type == 3;
}

} // namespace

bool MySinglePic::isDataSourceLocal() const
{
    if (isMovie()) {
        const bool headerDate = spType == SpTypeMvhdCreation || spType == SpTypeMvhdModification
                                || spType == SpTypeMvhdZeroFileDate || spType == SpTypeMvhdZeroFixedDate;
        return headerDate && spSingleFolder && spSingleFolder->isQuicktimeMVHDTimezoneCorrectionEnabled;
    }
    if (spType == SpTypeFileDatePreferredOverTiff)
        return false;

    if (exifDateTimeOriginalOLD)
        return isStampLocal(DateSlotCreation);
    if (exifDateTimeDigitizedOLD)
        return isStampLocal(DateSlotDigitized);
    if (tiffDateTimeOLD)
        return isStampLocal(DateSlotModification);
    return true;
}

bool MySinglePic::isStampLocal(DateSlotBits slot) const
{
    const PicAttributes &a = singlePicAttributes;
    switch (slot) {
    case DateSlotCreation:
        if (spType == SpTypeIptcDateCreated && !isCreaXmp && a.IPTCDateCreated)
            return !IptcDates::zoneOf(*a.IPTCDateCreated);
        return isCreaXmp ? isLocalXmpStamp(xmpStamp(a, xmpCreationTags)) : !a.ExifOffsetTimeOriginal;
    case DateSlotDigitized:
        return isDigiXmp ? isLocalXmpStamp(xmpStamp(a, xmpDigitizedTags)) : !a.ExifOffsetTimeDigitized;
    case DateSlotModification:
        return isModiXmp ? isLocalXmpStamp(xmpStamp(a, xmpModificationTags)) : !a.TIFFOffsetTime;
    }
    return true;
}

int MySinglePic::sourceXmpDateType() const
{
    const XmpStampRecord *stamp = nullptr;
    if ((spType == SpTypeExifOriginal || spType == SpTypeIptcDateCreated) && isCreaXmp)
        stamp = xmpStamp(singlePicAttributes, xmpCreationTags);
    else if (spType == SpTypeExifDigitized && isDigiXmp)
        stamp = xmpStamp(singlePicAttributes, xmpDigitizedTags);
    else if (spType == SpTypeTiffDateTime && isModiXmp)
        stamp = xmpStamp(singlePicAttributes, xmpModificationTags);
    return stamp ? stamp->type : 0;
}

qint64 MySinglePic::bundleUnchangedState() const
{
    if (!bundleDependentImage)
        return fileUnchangedState;
    const qint64 master = fileUnchangedState;
    const qint64 dependent = bundleDependentImage->fileUnchangedState;
    if (master == dependent && (master == 0 || master == 1 || master == 5))
        return master;
    // An outdated reading of one member with the other intact still calls for a reimport first.
    if ((master == 5 && dependent == 0) || (master == 0 && dependent == 5))
        return 5;
    return 4;
}

double MySinglePic::differenceFromGPSDate(OptionalDate gpsDate, OptionalDate date) const
{
    if (!gpsDate || !date || !isDataSourceLocal())
        return 0.0;
    const double difference = date->secondsSince(*gpsDate);
    if (difference > -1800.0 && difference < 1800.0)
        return 0.0;
    return difference;
}

void MySinglePic::validateMetaNormalization()
{
    const bool digitizedBeforeOriginal = exifDateTimeDigitizedOLD && exifDateTimeOriginalOLD
                                         && *exifDateTimeDigitizedOLD < *exifDateTimeOriginalOLD;
    const bool tiffBeforeDigitized = tiffDateTimeOLD && exifDateTimeDigitizedOLD
                                     && *tiffDateTimeOLD < *exifDateTimeDigitizedOLD;
    const bool tiffBeforeOriginal = !exifDateTimeDigitizedOLD && tiffDateTimeOLD
                                    && exifDateTimeOriginalOLD
                                    && *tiffDateTimeOLD < *exifDateTimeOriginalOLD;
    if (digitizedBeforeOriginal || tiffBeforeDigitized || tiffBeforeOriginal)
        normalizationType |= NormalizationMetaOrder;
    else
        normalizationType &= ~quint64(NormalizationMetaOrder);
}

void MySinglePic::validateFilesystemNormalization()
{
    if (fileModificationDateOLD && fileCreationDateOLD && *fileModificationDateOLD < *fileCreationDateOLD)
        normalizationType |= NormalizationFileDates;
    else
        normalizationType &= ~quint64(NormalizationFileDates);
}

std::optional<StampRecord> MySinglePic::sourceDateExifData() const
{
    switch (spType) {
    case SpTypeExifOriginal:
        return singlePicAttributes.ExifDateTimeOriginal;
    case SpTypeExifDigitized:
        return singlePicAttributes.ExifDateTimeDigitized;
    case SpTypeTiffDateTime:
    case SpTypeFileDatePreferredOverTiff:
        return singlePicAttributes.TIFFDateTime;
    default:
        return std::nullopt;
    }
}

std::optional<OffsetTagRecord> MySinglePic::sourceOffsetExifData() const
{
    switch (spType) {
    case SpTypeExifOriginal:
        return singlePicAttributes.ExifOffsetTimeOriginal;
    case SpTypeExifDigitized:
        return singlePicAttributes.ExifOffsetTimeDigitized;
    case SpTypeTiffDateTime:
    case SpTypeFileDatePreferredOverTiff:
        return singlePicAttributes.TIFFOffsetTime;
    default:
        return std::nullopt;
    }
}

} // namespace orv
