#include "folders/FileGroups.h"

#include "core/MySinglePic.h"
#include "core/PicScanner.h"
#include "folders/MySingleFolder.h"
#include "formats/MySingleFolderDataReader.h"
#include "time/DateStampCodec.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace orv {

namespace {

// Shorter maker texts (none, or the "-" placeholder) say nothing and never keep a pair apart.
bool hasMakerModel(const MySinglePic &pic) { return pic.pivMakeModel.size() >= 2; }

QString stampText(const QByteArray &data)
{
    const qsizetype nul = data.indexOf('\0');
    return QString::fromLatin1(nul < 0 ? data : data.left(nul));
}

// The still's own stamp and the movie's metadata stamp, both read as if written in UTC: the
// pair shares one clock, so their zones cancel out.
bool areLivePhotoDatesClose(const MySinglePic &movie, const MySinglePic &still)
{
    const std::optional<StampRecord> stillStamp = still.sourceDateExifData();
    const BoxedOptional<MovieStampRecord> &movieStamp = movie.singlePicAttributes.QTMetaDate;
    if (!stillStamp || !movieStamp)
        return false;
    const TimeZone utc = TimeZone::utc();
    const Instant stillDate = DateStampCodec::dateFromExifData(stillStamp->dateData, utc);
    const OptionalDate movieDate = DateStampCodec::dateIgnoringFromMDTATimeStamp(stampText(movieStamp->dateData), utc);
    if (!movieDate || stillDate.isDistantPast() || movieDate->isDistantPast())
        return false;
    return MySingleFolder::isBundlingAllowedForUtcDates(stillDate, *movieDate);
}

bool isRawSource(int spType)
{
    return (spType >= SpTypeExifOriginal && spType <= SpTypeEmptyOriginalFileDate)
           || spType == SpTypeEmptyOriginalFixedDate;
}

void moveZone(FolderTimeZones &zones, const MySinglePic &dependent, const MySinglePic &master)
{
    for (auto it = zones.itemsByZone.cbegin(); it != zones.itemsByZone.cend(); ++it) {
        if (!it.value().contains(&dependent))
            continue;
        const QString zone = it.key();
        zones.remove(dependent);
        zones.assign(master, zone);
        return;
    }
}

} // namespace

bool FileGroups::isRaw(const MySinglePic &raw, const MySinglePic &jpeg, bool isSlideshowOnly)
{
    if (jpeg.fileFormatType != JpegFormat)
        return false;
    if (isSlideshowOnly)
        return true;
    if (hasMakerModel(raw) && hasMakerModel(jpeg) && raw.pivMakeModel != jpeg.pivMakeModel)
        return false;
    if (!isRawSource(raw.spType) || jpeg.spType < SpTypeExifOriginal || jpeg.spType > SpTypeNoTagsFileDate)
        return false;
    return !raw.hasSaveError() && !jpeg.hasSaveError();
}

bool FileGroups::isMovie(const MySinglePic &movie, const MySinglePic &still, bool isSlideshowOnly)
{
    if (still.fileFormatType != JpegFormat && still.fileFormatType != HeicFormat)
        return false;
    if (isSlideshowOnly)
        return true;
    if (!still.UUID.isEmpty() || !movie.UUID.isEmpty())
        return still.UUID == movie.UUID && movie.spType != SpTypeMovieFileDate && movie.spType != SpTypeRiff;
    return movie.spType == SpTypeMdta && still.spType == SpTypeExifOriginal && hasMakerModel(movie)
           && movie.pivMakeModel == still.pivMakeModel && !movie.hasSaveError() && !still.hasSaveError()
           && areLivePhotoDatesClose(movie, still);
}

void FileGroups::makeImage(MySinglePic &dependent, MySinglePic &master)
{
    master.bundleDependentImage = &dependent;
    dependent.bundleMasterImage = &master;
    const QStringList ownSidecars = dependent.spSidecarExtensions;
    for (const QString &extension : ownSidecars)
        master.addSidecarExtension(extension);
    master.addSidecarExtension(QFileInfo(dependent.spName).suffix());
    const bool hadXmp = std::any_of(ownSidecars.cbegin(), ownSidecars.cend(), [](const QString &extension) {
        return extension.compare(QLatin1String("xmp"), Qt::CaseInsensitive) == 0;
    });
    dependent.spSidecarExtensions = hadXmp ? QStringList{MySinglePic::isXmpMaster} : QStringList{};

    if (dependent.gpsLatOld && master.gpsLat) {
        master.gpsLatOld = master.gpsLat;
        master.gpsLongOld = master.gpsLong;
        master.gpsLat = dependent.gpsLat;
        master.gpsLong = dependent.gpsLong;
        dependent.gpsLat = dependent.gpsLatOld;
        dependent.gpsLong = dependent.gpsLongOld;
        dependent.gpsLatOld.reset();
        dependent.gpsLongOld.reset();
    }
}

void FileGroups::moveInfosFromDependent(MySinglePic &dependent, MySinglePic &master)
{
    if (dependent.isMovie() && !m_folder.isEXIFIgnored()) {
        // A Live Photo's movie is dated by its metadata date, like its still by its own stamp.
        const BoxedOptional<MovieStampRecord> &meta = dependent.singlePicAttributes.QTMetaDate;
        if (meta && dependent.spType != SpTypeMdta) {
            if (const OptionalDate date = DateStampCodec::dateFromMDTATimeStamp(stampText(meta->dateData),
                                                                               TimeZone::systemZone())) {
                dependent.spDateTimeOriginal = date;
                dependent.spType = SpTypeMdta;
            }
        }
        dependent.exifDateTimeOriginalOLD = dependent.spDateTimeOriginal;
        dependent.exifDateTimeDigitizedOLD.reset();
    }
    if (dependent.isKeeper) {
        dependent.isKeeper = false;
        if (master.isKeeper)
            --m_folder.keepers;
        master.isKeeper = true;
    }
    if (dependent.isRejected) {
        dependent.isRejected = false;
        if (master.isRejected)
            --m_folder.rejects;
        master.isRejected = true;
    }
    if (dependent.marker)
        master.marker = dependent.marker;
    if (m_folder.sfEditMode == MySingleFolder::EditSeparately && dependent.singlePicModification != 0.0) {
        if (master.singlePicModification != 0.0) {
            --m_folder.singlePicModeImages;
            dependent.singlePicModification = master.singlePicModification;
        } else {
            master.singlePicModification = dependent.singlePicModification;
        }
    }
    if (dependent.hasImportOptionChanges() && !master.hasImportOptionChanges() && m_folder.fixedDates > 0)
        --m_folder.fixedDates;
    if (m_folder.quickSelection.remove(&dependent))
        m_folder.quickSelection.insert(&master);
}

void FileGroups::changeD(MySinglePic &dependent, MySinglePic &master)
{
    moveZone(m_folder.sourceTimeZones, dependent, master);
    moveZone(m_folder.targetTimeZones, dependent, master);
}

void FileGroups::formAfterScan()
{
    QSet<QString> newNames;
    for (const MySinglePic *pic : m_staged)
        newNames.insert(pic->spName);
    if (m_folder.perFolderImportOptions.createFileGroups)
        checkForPossibleBundles(newNames);
    matchSidecars();
}

void FileGroups::checkForPossibleBundles(const QSet<QString> &newNames, bool isMoveImport)
{
    const auto isLooking = [isMoveImport](const MySinglePic *pic) {
        return isMoveImport ? pic->isPossibleBundlePicTemp : pic->isPossibleBundlePic;
    };
    QList<MySinglePic *> all = allImportRelevantFiles();
    if (std::none_of(all.cbegin(), all.cend(), isLooking))
        return;
    // Base names compare exactly, with case; the full name breaks ties so that two candidates
    // for one partner are decided the same way on every run.
    std::sort(all.begin(), all.end(), [&isLooking](const MySinglePic *a, const MySinglePic *b) {
        if (a->spBaseName() != b->spBaseName())
            return a->spBaseName() < b->spBaseName();
        if (isLooking(a) != isLooking(b))
            return isLooking(a);
        return a->spName < b->spName;
    });

    const bool isSlideshowOnly = m_folder.isEXIFIgnored();
    QList<MySinglePic *> rawJpgDependents, livePhotoDependents;
    for (qsizetype i = 0; i < all.size(); ++i) {
        MySinglePic &item = *all[i];
        for (qsizetype j = i + 1; j < all.size() && isLooking(&item); ++j) {
            MySinglePic &other = *all[j];
            if (other.spBaseName() != item.spBaseName())
                break;
            if (!newNames.contains(item.spName) && !newNames.contains(other.spName))
                continue;
            if (item.bundleDependentImage || other.bundleDependentImage || other.bundleMasterImage)
                continue;
            const bool itemIsMovie = item.spType > SpTypeUnsupportedPhoto;
            if (itemIsMovie ? !isMovie(item, other, isSlideshowOnly) : !isRaw(item, other, isSlideshowOnly))
                continue;
            item.isPossibleBundlePic = false;
            MySinglePic &dependent = itemIsMovie ? item : other;
            MySinglePic &master = itemIsMovie ? other : item;
            moveInfosFromDependent(dependent, master);
            makeImage(dependent, master);
            (itemIsMovie ? livePhotoDependents : rawJpgDependents).append(&dependent);
            changeD(dependent, master);
        }
    }
    if (isMoveImport)
        for (MySinglePic *pic : std::as_const(all))
            pic->isPossibleBundlePicTemp = false;

    for (MySinglePic *dependent : rawJpgDependents + livePhotoDependents)
        m_folder.sfPicDetails_fullArray.removeOne(dependent);
    m_folder.bundleDependentsRawAndJPG.append(rawJpgDependents);
    m_folder.bundleDependentsLivePhotos.append(livePhotoDependents);
    if (rawJpgDependents.isEmpty() && livePhotoDependents.isEmpty())
        return;
    m_folder.fixGroupSettings(m_folder.perFolderImportOptions);
    for (MySinglePic *dependent : rawJpgDependents + livePhotoDependents)
        dependent->bundleMasterImage->validateGroupDeviations();
}

QList<MySinglePic *> FileGroups::allImportRelevantFiles() const
{
    return m_folder.sfPicDetails_fullArray + m_staged;
}

QList<MySinglePic *> FileGroups::candidatesForBaseName(const QString &baseName, bool withDependents) const
{
    QList<MySinglePic *> candidates;
    for (MySinglePic *pic : allImportRelevantFiles()) {
        if (pic->bundleMasterImage || pic->spBaseName() != baseName)
            continue;
        candidates.append(pic);
        if (withDependents && pic->bundleDependentImage)
            candidates.append(pic->bundleDependentImage);
    }
    return candidates;
}

void FileGroups::matchSidecars()
{
    QStringList xmp = m_folder.xmpSidecarPaths.values();
    QStringList aae = m_folder.aaeSidecarPaths.values();
    std::sort(xmp.begin(), xmp.end());
    std::sort(aae.begin(), aae.end());
    for (const QString &path : std::as_const(xmp))
        matchXmpSidecar(path);
    for (const QString &path : std::as_const(aae))
        matchAaeSidecar(path);
    m_folder.xmpSidecarPaths.clear();
    m_folder.aaeSidecarPaths.clear();
}

void FileGroups::matchXmpSidecar(const QString &path)
{
    const QFileInfo sidecar(path);
    const QList<MySinglePic *> candidates = candidatesForBaseName(sidecar.completeBaseName(), true);
    if (candidates.isEmpty()) {
        m_folder.importErrors.add(ImportErrors::SidecarWithoutItem, path);
        return;
    }
    QFile file(path);
    XmpSidecarMetadata metadata;
    if (file.open(QIODevice::ReadOnly))
        metadata = MySingleFolderDataReader().metadataFromXMPSidecarAtPath(path);
    else
        m_folder.importErrors.add(ImportErrors::SidecarUnreadable, path);
    const QSet<QString> &extensions = metadata.extensions;

    const auto named = std::find_if(candidates.cbegin(), candidates.cend(), [&extensions](const MySinglePic *pic) {
        return extensions.contains(QFileInfo(pic->spName).suffix().toLower());
    });
    MySinglePic *owner = named != candidates.cend() ? *named : nullptr;
    if (!owner && extensions.isEmpty()) {
        if (candidates.size() == 1) {
            owner = candidates.first();
        } else {
            const auto raw = std::find_if(candidates.cbegin(), candidates.cend(),
                                          [](const MySinglePic *pic) { return pic->isRaw(); });
            owner = raw != candidates.cend() ? *raw : nullptr;
        }
    }
    if (owner) {
        owner->addSidecarExtension(sidecar.suffix());
        PicScanner::takeSidecarPlace(*owner, metadata);
        PicScanner::takeXmpRating(*owner, metadata);
    } else
        m_folder.importErrors.add(ImportErrors::SidecarWithoutExtensionMatch, path);
}

void FileGroups::matchAaeSidecar(const QString &path)
{
    const QFileInfo sidecar(path);
    const QList<MySinglePic *> candidates = candidatesForBaseName(sidecar.completeBaseName(), false);
    if (candidates.size() == 1)
        candidates.first()->addSidecarExtension(sidecar.suffix());
    else
        m_folder.importErrors.add(candidates.isEmpty() ? ImportErrors::SidecarWithoutItem
                                                       : ImportErrors::SidecarWithoutExtensionMatch,
                                  path);
}

} // namespace orv
