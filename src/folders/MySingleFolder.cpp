#include "folders/MySingleFolder.h"

#include "core/MySinglePic.h"
#include "folders/ImportFilter.h"
#include "time/TimeZone.h"

#include <QDir>
#include <QFileInfo>
#include <QMutexLocker>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

DateModifications zeroDateModifications()
{
    using namespace dateModificationKey;
    return {{direction, QStringLiteral("+")},
            {days, QStringLiteral("0")},
            {hours, QStringLiteral("0")},
            {minutes, QStringLiteral("0")},
            {seconds, QStringLiteral("0")}};
}

// Movies whose date comes from, or stands in for, their QuickTime header.
bool hasMovieHeaderDate(int spType) { return spType >= SpTypeMvhdCreation && spType <= SpTypeMvhdZeroFixedDate; }

// A missing name and the system zone's own name both read as "_SYSTEM".
QString normalizedZoneName(const std::optional<QString> &name)
{
    if (!name || name->isEmpty() || *name == TimeZone::systemZone().name())
        return zoneName::system;
    return *name;
}

} // namespace

MySingleFolder::MySingleFolder(const QString &path, bool separateMode)
    : sfLastKnownFolderPath(path), sfDateModifications(zeroDateModifications())
{
    sfFolder = QFileInfo(path).fileName();
    sfFolderPath = path;
    sfEditMode = separateMode ? EditSeparately : EditTogether;
    targetZoneForSave = [this](const MySinglePic &pic) -> std::optional<TimeZone> {
        if (sourceTimeZones.isEmpty() && targetTimeZones.isEmpty())
            return std::nullopt;
        return targetTimeZoneForPic(pic, sourceTimeZoneForPic(pic));
    };
}

MySingleFolder *MySingleFolder::of(const MySinglePic &pic)
{
    return static_cast<MySingleFolder *>(pic.spSingleFolder);
}

ItemScanContext MySingleFolder::itemScanContext()
{
    ItemScanContext items;
    items.folder = this;
    items.exifIgnored = isEXIFIgnored();
    items.mdtaDateEnabled = isQuicktimeMDTADateEnabled;
    items.mvhdTimezoneCorrection = isQuicktimeMVHDTimezoneCorrectionEnabled;
    items.options = perFolderImportOptions;
    return items;
}

void MySingleFolder::takeScanContext(const ItemScanContext &items)
{
    perFolderImportOptions = items.options;
    fixedDates += items.fixedDates;
    gpxAddedPaths.unite(items.gpxPaths);
    xmpSidecarPaths.unite(items.xmpSidecarPaths);
    aaeSidecarPaths.unite(items.aaeSidecarPaths);
}

MySingleFolder::~MySingleFolder() = default;

QString MySingleFolder::unlockedSecUrl()
{
    QMutexLocker locker(&m_accessLock);
    if (FolderToken::isSticky(errorType))
        return {};
    FolderToken::Resolution resolved = sfSecBookmark.resolve();
    if (resolved.isStale) {
        if (const std::optional<FolderToken> renewed = FolderToken::forPath(resolved.path))
            sfSecBookmark = *renewed;
    }
    if (!resolved.path.isEmpty() && !FolderToken::isAccessible(resolved.path))
        resolved = {QString(), false, FolderAccessError::Refused};
    if (!resolved.path.isEmpty()) {
        if (didProcessUnlockError) {
            didProcessUnlockError = false;
            isDisconnected = false;
        }
        sfFolderPath = resolved.path;
        sfFolder = QFileInfo(resolved.path).fileName();
        sfLastKnownFolderPath = resolved.path;
        return resolved.path;
    }
    if (FolderToken::isSticky(resolved.error))
        errorType = resolved.error;
    if (!didProcessUnlockError) {
        didProcessUnlockError = true;
        if (!sfPicDetails_fullArray.isEmpty()) {
            isDisconnected = true;
            isReconnectionHandled = false;
        }
    }
    return {};
}

bool MySingleFolder::isWriteableCheckingTrashed(bool checkingTrashed)
{
    const QString path = unlockedSecUrl();
    if (path.isEmpty() || !QFileInfo(path).isWritable())
        return false;
    if (!checkingTrashed)
        return true;
    const QString trash = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                          + QLatin1String("/Trash/");
    return !(path + QLatin1Char('/')).startsWith(trash);
}

void MySingleFolder::addImagesToImport(const QStringList &names, const ImportFilter &filter)
{
    const QStringList kept = filter.filteredPaths(names, sfFolderPath);
    QMutexLocker locker(&m_imagesToImportLock);
    m_imagesToImport.append(ImportBatch{kept, kept.size() < names.size()});
}

std::optional<MySingleFolder::ImportBatch> MySingleFolder::takeImagesToImport()
{
    QMutexLocker locker(&m_imagesToImportLock);
    if (m_imagesToImport.isEmpty())
        return std::nullopt;
    return m_imagesToImport.takeFirst();
}

bool MySingleFolder::hasImagesToImport() const
{
    QMutexLocker locker(&m_imagesToImportLock);
    return !m_imagesToImport.isEmpty();
}

void MySingleFolder::clearImagesToImport()
{
    QMutexLocker locker(&m_imagesToImportLock);
    m_imagesToImport.clear();
}

qsizetype MySingleFolder::fullMediaCount() const
{
    return sfPicDetails_fullArray.size() + bundleDependentsRawAndJPG.size() + bundleDependentsLivePhotos.size();
}

QList<MySinglePic *> MySingleFolder::sortedSfPicDetails_Full() const
{
    QList<MySinglePic *> sorted = sfPicDetails_fullArray;
    std::stable_sort(sorted.begin(), sorted.end(), [](const MySinglePic *a, const MySinglePic *b) {
        return a->indexInFolder_full < b->indexInFolder_full;
    });
    return sorted;
}

qint64 MySingleFolder::sfFromIndexInSource() const
{
    const QList<MySinglePic *> sorted = sortedSfPicDetails_Full();
    return sorted.isEmpty() ? -1 : sorted.first()->indexInSource_full;
}

qint64 MySingleFolder::sfTillIndexInSource() const
{
    const QList<MySinglePic *> sorted = sortedSfPicDetails_Full();
    return sorted.isEmpty() ? -1 : sorted.last()->indexInSource_full;
}

MySinglePic *MySingleFolder::adoptPic(std::unique_ptr<MySinglePic> pic, bool visible)
{
    MySinglePic *raw = pic.get();
    raw->spSingleFolder = this;
    m_ownedPics.push_back(std::move(pic));
    if (visible)
        sfPicDetails_fullArray.append(raw);
    return raw;
}

void MySingleFolder::handOverPic(MySinglePic &master, MySingleFolder &target, qsizetype index)
{
    const auto take = [this](MySinglePic *pic) {
        const auto owned = std::find_if(m_ownedPics.begin(), m_ownedPics.end(),
                                        [pic](const std::unique_ptr<MySinglePic> &p) { return p.get() == pic; });
        std::unique_ptr<MySinglePic> taken = std::move(*owned);
        m_ownedPics.erase(owned);
        quickSelection.remove(pic);
        sourceTimeZones.remove(*pic);
        targetTimeZones.remove(*pic);
        return taken;
    };
    sfPicDetails_fullArray.removeOne(&master);
    target.adoptPic(take(&master), false);
    target.sfPicDetails_fullArray.insert(std::clamp(index, qsizetype(0), target.sfPicDetails_fullArray.size()),
                                         &master);
    if (MySinglePic *dependent = master.bundleDependentImage) {
        for (QList<MySinglePic *> *list : {&bundleDependentsRawAndJPG, &bundleDependentsLivePhotos}) {
            if (list->removeOne(dependent)) {
                target.adoptPic(take(dependent), false);
                (list == &bundleDependentsRawAndJPG ? target.bundleDependentsRawAndJPG
                                                    : target.bundleDependentsLivePhotos)
                    .append(dependent);
            }
        }
    }
}

QSet<QString> MySingleFolder::itemNames() const
{
    QSet<QString> names;
    for (const auto &pic : m_ownedPics) {
        names.insert(pic->spName);
        for (const QString &name : pic->spSidecarFiles())
            names.insert(name);
    }
    return names;
}

void MySingleFolder::sfUpdatePicsFromAndTill(bool isReimportRunning)
{
    const qint64 oldCount = sfPics;
    sfPics = sfPicDetails_fullArray.size();
    if (sfPics > 0) {
        OptionalDate from, till;
        for (const MySinglePic *pic : std::as_const(sfPicDetails_fullArray)) {
            const OptionalDate date = pic->spDateTimeModified_sort();
            if (!date)
                continue;
            if (!from || *date < *from)
                from = date;
            if (!till || *date > *till)
                till = date;
        }
        sfFrom = from;
        sfTill = till;
        return;
    }
    // Only a folder whose last item has just left resets; one never imported had nothing to lose.
    if (oldCount <= 0 || isReimportRunning)
        return;
    sfFrom.reset();
    sfTill.reset();
    if (sfEditMode == EditTogether) {
        sfDateModifications = zeroDateModifications();
        sfDateModificationsTimeInterval = 0.0;
    }
}

void MySingleFolder::updateFolderValuesOnPicMove()
{
    validateTZCUnsaved();
    bool images = false, movies = false;
    locationMovedImages = ofWhichAddedByTrack = exifDateTimeAddedImages = 0;
    for (const MySinglePic *pic : std::as_const(sfPicDetails_fullArray)) {
        (pic->isMovie() ? movies : images) = true;
        if (pic->hasLocationChange()) {
            ++locationMovedImages;
            if (pic->hasAddedLocation == 2)
                ++ofWhichAddedByTrack;
        }
        if (pic->shouldAddExifDateTimeTags && !pic->didAddExifDateTimeTags)
            ++exifDateTimeAddedImages;
    }
    mediaTypesState = (images ? ImagesOnly : NoMedia) | (movies ? MoviesOnly : NoMedia);
    recountKeepersAndRejects();
}

void MySingleFolder::recountKeepersAndRejects()
{
    keepers = int(std::count_if(sfPicDetails_fullArray.cbegin(), sfPicDetails_fullArray.cend(),
                                [](const MySinglePic *pic) { return pic->isKeeper; }));
    rejects = int(std::count_if(sfPicDetails_fullArray.cbegin(), sfPicDetails_fullArray.cend(),
                                [](const MySinglePic *pic) { return pic->isRejected; }));
}

bool MySingleFolder::isUnsavedFolder() const
{
    if (isDateModified() || fixedDates || saveErrors || isUnsavedDueToTZC || locationMovedImages
        || exifDateTimeAddedImages)
        return true;
    if (harmonizingRawJpgsType == 0)
        return false;
    return std::any_of(bundleDependentsRawAndJPG.cbegin(), bundleDependentsRawAndJPG.cend(),
                       [](const MySinglePic *dependent) {
                           return dependent->bundleMasterImage && dependent->bundleMasterImage->isGroupHarmonized();
                       });
}

bool MySingleFolder::isUnsavedFolderIgnoringErrorsAndFixedDates() const
{
    return isDateModified() || locationMovedImages > ofWhichAddedByTrack;
}

qint64 MySingleFolder::unsavedImagesCount() const
{
    if (sfEditMode == EditTogether && sfDateModificationsTimeInterval != 0.0)
        return sfPics;
    return std::count_if(sfPicDetails_fullArray.cbegin(), sfPicDetails_fullArray.cend(), [](const MySinglePic *pic) {
        return pic->isUnsaved() || pic->isGroupHarmonized();
    });
}

bool MySingleFolder::isInconsistent() const
{
    return std::any_of(sfPicDetails_fullArray.cbegin(), sfPicDetails_fullArray.cend(), [](const MySinglePic *pic) {
        const qint64 state = pic->bundleUnchangedState();
        return state >= 1 && state <= 4;
    });
}

bool MySingleFolder::hasQTMvhd() const
{
    return std::any_of(sfPicDetails_fullArray.cbegin(), sfPicDetails_fullArray.cend(), [](const MySinglePic *pic) {
        const MySinglePic *movie = pic->bundleDependentImage && pic->bundleDependentImage->isMovie()
                                       ? pic->bundleDependentImage
                                       : pic;
        return hasMovieHeaderDate(movie->spType);
    });
}

bool MySingleFolder::isDateModified() const
{
    return sfEditMode == EditTogether ? sfDateModificationsTimeInterval != 0.0 : singlePicModeImages != 0;
}

bool MySingleFolder::isTogetherDateUIModified() const
{
    return sfDateModificationsTimeInterval != 0.0 || hasChangedDirection;
}

void MySingleFolder::setDirection(const QString &direction, const QString &days, const QString &hours,
                                  const QString &minutes, const QString &seconds)
{
    sfDateModifications = {{dateModificationKey::direction, direction},
                           {dateModificationKey::days, days},
                           {dateModificationKey::hours, hours},
                           {dateModificationKey::minutes, minutes},
                           {dateModificationKey::seconds, seconds}};
    const double magnitude = days.toDouble() * 3600.0 * 24.0 + double(seconds.toInt()) + minutes.toInt() * 60.0
                             + hours.toInt() * 3600.0;
    const bool negative = direction == QLatin1String("-");
    sfDateModificationsTimeInterval = negative ? -magnitude : magnitude;
    hasChangedDirection = tempHasChangedDirection = negative;
    sfUpdatePicsFromAndTill();
}

void MySingleFolder::setSfDateModificationsFromTimeInterval(double interval, bool direction)
{
    sfDateModificationsTimeInterval = interval;
    hasDSTJumperType = 0;
    if (interval != 0.0)
        direction = interval < 0.0;
    hasChangedDirection = tempHasChangedDirection = direction;
    const double magnitude = std::fabs(interval);
    const auto days = qint64(magnitude / 86400.0);
    double rest = magnitude - double(days) * 86400.0;
    const int hours = int(rest / 3600.0);
    rest -= hours * 3600.0;
    const int minutes = int(rest / 60.0);
    const int seconds = int(rest - minutes * 60.0);
    sfDateModifications = {{dateModificationKey::direction, direction ? QStringLiteral("-") : QStringLiteral("+")},
                           {dateModificationKey::days, QString::number(days)},
                           {dateModificationKey::hours, QString::number(hours)},
                           {dateModificationKey::minutes, QString::number(minutes)},
                           {dateModificationKey::seconds, QString::number(seconds)}};
    sfUpdatePicsFromAndTill();
}

void MySingleFolder::updateSinglePicModificationBy(MySinglePic &pic, double difference)
{
    if (difference == 0.0 || !pic.takesEdits())
        return;
    setSinglePicModification(pic, pic.singlePicModification + difference);
}

void MySingleFolder::setSinglePicModification(MySinglePic &pic, double value)
{
    const bool wasModified = pic.singlePicModification != 0.0;
    pic.singlePicModification = value;
    if (pic.bundleDependentImage)
        pic.bundleDependentImage->singlePicModification = value;
    const bool isModified = value != 0.0;
    if (isModified == wasModified)
        return;
    singlePicModeImages += isModified ? 1 : -1;
    lastChangedPicIndex = -2;
}

void MySingleFolder::clearSinglePicModeImages()
{
    firstChangedPicIndex = -1;
    lastChangedPicIndex = -2;
    for (MySinglePic *pic : std::as_const(sfPicDetails_fullArray)) {
        if (pic->singlePicModification == 0.0 || pic->hasSaveErrorTime())
            continue;
        pic->singlePicModification = 0.0;
        if (pic->bundleDependentImage)
            pic->bundleDependentImage->singlePicModification = 0.0;
        --singlePicModeImages;
    }
    sfUpdatePicsFromAndTill();
}

std::optional<QString> MySingleFolder::sourceTimeZoneNameForPic(const MySinglePic &pic) const
{
    return ZoneProvider{sourceTimeZones, targetTimeZones}.sourceTimeZoneNameForPic(pic);
}

std::optional<QString> MySingleFolder::targetTimeZoneNameForPic(const MySinglePic &pic) const
{
    return ZoneProvider{sourceTimeZones, targetTimeZones}.targetTimeZoneNameForPic(pic);
}

std::optional<TimeZone> MySingleFolder::sourceTimeZoneForPic(const MySinglePic &pic) const
{
    return ZoneProvider{sourceTimeZones, targetTimeZones}.sourceTimeZoneForPic(pic);
}

std::optional<TimeZone> MySingleFolder::targetTimeZoneForPic(const MySinglePic &pic,
                                                             const std::optional<TimeZone> &knownSource) const
{
    return ZoneProvider{sourceTimeZones, targetTimeZones}.targetTimeZoneForPic(pic, knownSource);
}

bool MySingleFolder::validateTZCUnsavedForPic(const MySinglePic &pic, const std::optional<QString> &source,
                                              const std::optional<QString> &target)
{
    if (pic.spType >= SpTypeNoTagsFileDate && pic.spType <= SpTypeMovieFileDate)
        return false;
    if (target == zoneName::unchangedLeft)
        return false;
    return normalizedZoneName(source) != normalizedZoneName(target);
}

void MySingleFolder::validateTZCUnsaved()
{
    if (sourceTimeZones.isEmpty() && targetTimeZones.isEmpty()) {
        if (isUnsavedDueToTZC)
            for (MySinglePic *pic : std::as_const(sfPicDetails_fullArray))
                pic->isUnsavedDueToTZC = false;
        isUnsavedDueToTZC = false;
        return;
    }
    isUnsavedDueToTZC = false;
    for (MySinglePic *pic : std::as_const(sfPicDetails_fullArray)) {
        pic->isUnsavedDueToTZC =
            validateTZCUnsavedForPic(*pic, sourceTimeZoneNameForPic(*pic), targetTimeZoneNameForPic(*pic));
        isUnsavedDueToTZC = isUnsavedDueToTZC || pic->isUnsavedDueToTZC;
    }
}

void MySingleFolder::cleanupTimeZones()
{
    if (!targetTimeZones.defaultZone) {
        sourceTimeZones.defaultZone.reset();
        return;
    }
    if (*targetTimeZones.defaultZone == zoneName::unchangedLeftFolder)
        return;
    sourceTimeZones.defaultZone = targetTimeZones.defaultZone;
    targetTimeZones.defaultZone = zoneName::unchangedLeftFolder;
}

void MySingleFolder::setTZDefaultsSource(const QString &zone, bool useAltMode)
{
    if (!sourceTimeZones.isEmpty() || !targetTimeZones.isEmpty())
        return;
    sourceTimeZones.defaultZone = zone;
    if (useAltMode)
        targetTimeZones.defaultZone = zoneName::unchangedLeftFolder;
}

void MySingleFolder::fixGroupSettings(const ImportOptions &defaults)
{
    globalSortLPsByMov = defaults.sortLPsByMov;
    if (harmonizingRawJpgsType < 0 && !bundleDependentsRawAndJPG.isEmpty())
        harmonizingRawJpgsType = defaults.harmonizingRawJpgsTypeDefault;
    if (rawJpgDisplayType < 0 && !bundleDependentsRawAndJPG.isEmpty())
        rawJpgDisplayType = defaults.groupDisplayRawJpgPreviewDefault;
    if (sortLPsByMovModifier < 0 && !bundleDependentsLivePhotos.isEmpty())
        sortLPsByMovModifier = defaults.sortLPsByMovModifierDefault;
}

} // namespace orv
