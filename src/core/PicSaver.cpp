#include "core/PicSaver.h"

#include "core/ExiftoolSteps.h"
#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "core/SaveErrors.h"
#include "core/SaveSettings.h"
#include "core/StampEdits.h"
#include "core/StoredBytes.h"
#include "formats/FileReader.h"
#include "formats/InPlaceWriter.h"
#include "formats/MySingleFolderDataReader.h"
#include "formats/PngLocator.h"
#include "formats/SaveJournal.h"
#include "time/DateStampCodec.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <algorithm>
#include <cmath>

namespace orv {

namespace {

bool isPhotoType(int type)
{
    return (type >= SpTypeExifOriginal && type <= SpTypeEmptyTiffFixedDate) || type == SpTypeIptcDateCreated;
}
bool isMovieType(int type)
{
    return type >= SpTypeRiff && type <= SpTypeMdta;
}
bool isWithinASecond(double seconds)
{
    return seconds > -1.0 && seconds < 1.0;
}

bool allExist(const QStringList &paths)
{
    return std::all_of(paths.begin(), paths.end(),
                       [](const QString &p) { return QFileInfo::exists(p); });
}

// A regular file at the path; a directory there is no file of ours.
std::optional<FileAttributes> fileAt(const QString &path)
{
    std::optional<FileAttributes> attributes = FileAttributes::read(path);
    if (attributes && attributes->isDirectory)
        return std::nullopt;
    return attributes;
}

} // namespace

bool PicSaver::areTheFileAttributesUnchanged(MySinglePic &pic, const FileAttributes &current)
{
    pic.isExtensionHidden = current.isExtensionHidden;
    const PicAttributes &a = pic.singlePicAttributes;
    if (!a.NSFileCreationDate || !a.NSFileModificationDate || !a.NSFileSize ||
        *a.NSFileSize != current.size)
        return false;
    const double c = a.NSFileCreationDate->secondsSince(current.creationDate);
    const double m = a.NSFileModificationDate->secondsSince(current.modificationDate);
    if (isWithinASecond(c) && isWithinASecond(m))
        return true;
    const bool creationReset = a.NSFileCreationDate->secondsSinceEpoch() < 0.0 &&
                               current.creationDate.secondsSinceEpoch() == 0.0;
    if (!creationReset)
        return false;
    const bool modificationReset = a.NSFileModificationDate->secondsSinceEpoch() < 0.0 &&
                                   current.modificationDate.secondsSinceEpoch() == 0.0;
    return modificationReset || isWithinASecond(m);
}

qint64 PicSaver::updatedUnchangedFileState(MySinglePic &pic)
{
    const OptionalDate lastChange =
        pic.spSingleFolder ? pic.spSingleFolder->lastLocalChange : std::nullopt;
    if (pic.lastCheckedAt && (!lastChange || *pic.lastCheckedAt >= *lastChange))
        return pic.fileUnchangedState;
    pic.lastCheckedAt = currentInstant();
    if (pic.fileUnchangedState == 5)
        return 5;

    const QString path = pic.spPath();
    const std::optional<FileAttributes> attributes = fileAt(path);
    if (!attributes)
        return 1;
    if (!attributes->isRegularFile)
        return 3;
    if (!allExist(pic.spSidecarPaths()))
        return 4;
    FileReader file(path);
    if (!file.isOpen())
        return 2;
    if (!areTheFileAttributesUnchanged(pic, *attributes))
        return 3;
    if (!pic.takesEdits())
        return 0;
    if (!StoredBytes::areUnchanged(pic.singlePicAttributes, file))
        return 4;
    return 0;
}

bool PicSaver::validatePicWithSavingChanges(bool saving, int onlySaveFilesOfType,
                                            bool isWithoutError)
{
    if (!saving)
        return realValidatePicWithSavingChanges(false, onlySaveFilesOfType, isWithoutError);

    // What is due, taken before the save changes it.
    const quint64 failedType = saveErrorTypeIfFailed();
    const bool locationDue = m_pic.hasLocationChange() || m_pic.hasSaveErrorLocation();
    if (locationDue && isWithoutError) {
        for (const QString &sidecar : m_pic.spSidecarPaths()) {
            if (!sidecar.endsWith(QLatin1String(".xmp"), Qt::CaseInsensitive))
                continue;
            if (!QFileInfo::exists(sidecar)) {
                m_env.errors.addErrorID(SaveErrorId::XmpSidecarMissing, m_pic);
                isWithoutError = false;
            } else if (!QFileInfo(sidecar).isWritable()) {
                m_env.errors.addErrorID(SaveErrorId::XmpSidecarUnusable, m_pic);
                isWithoutError = false;
            }
        }
    }

    const bool success =
        realValidatePicWithSavingChanges(true, onlySaveFilesOfType, isWithoutError);
    if (success) {
        m_pic.shouldReSaveLoc = false;
        m_pic.saveErrorType = 0;
        if (m_pic.normalizationType & NormalizationFileDates) {
            m_pic.normalizationType &= ~quint64(NormalizationFileDates);
            m_pic.validateFilesystemNormalization();
        }
    } else {
        m_pic.saveErrorType = failedType;
    }
    return success;
}

bool PicSaver::invalidPicErrorID(int savingId, int checkingId, bool saving)
{
    if (!m_pic.bundleMasterImage)
        m_pic.isInvalidDueToChangesAfterImport = true;
    m_env.errors.addErrorID(saving ? savingId : checkingId, m_pic);
    return false;
}

bool PicSaver::realValidatePicWithSavingChanges(bool saving, int onlySaveFilesOfType,
                                                bool isWithoutError)
{
    if (!saving && m_pic.isInvalidDueToChangesAfterImport)
        return false;
    const QString path = m_pic.spPath();
    bool success = isWithoutError;
    std::optional<FileReader> file;
    const std::optional<FileAttributes> attributes = fileAt(path);
    if (!attributes) {
        m_pic.fileUnchangedState = 1;
        if (success)
            success =
                invalidPicErrorID(SaveErrorId::SaveMissing, SaveErrorId::CheckMissing, saving);
    } else if (success && !attributes->isRegularFile) {
        // Exchanged for a pipe or a device since the import: opening it could block the run.
        m_pic.fileUnchangedState = 3;
        m_env.errors.addErrorID(SaveErrorId::NotARegularFile, m_pic);
        success = false;
    } else if (success) {
        file.emplace(path);
        if (!file->isOpen()) {
            file.reset();
            success = invalidPicErrorID(SaveErrorId::SaveCannotOpen, SaveErrorId::CheckCannotOpen,
                                        saving);
        } else if (!allExist(m_pic.spSidecarPaths()) ||
                   !areTheFileAttributesUnchanged(m_pic, *attributes)) {
            m_pic.fileUnchangedState = 3;
            success =
                invalidPicErrorID(SaveErrorId::SaveChanged, SaveErrorId::CheckChanged, saving);
        }
    }

    if (!m_pic.takesEdits())
        return success;
    if (saving && success && !areNewDatesWritable()) {
        m_env.errors.addErrorID(SaveErrorId::DateOutOfRange, m_pic);
        return false;
    }
    if (m_pic.spType == SpTypeNoTagsImportOptionDate && saving && success)
        m_pic.spType = SpTypeNoTagsFileDate;
    if (isPhotoType(m_pic.spType))
        return savePhoto(saving, onlySaveFilesOfType, success, file ? &*file : nullptr);
    if (isMovieType(m_pic.spType))
        return saveMovie(saving, success, file ? &*file : nullptr);
    return saveFile(saving, onlySaveFilesOfType, success);
}

bool PicSaver::areNewDatesWritable() const
{
    for (const OptionalDate &date :
         {m_pic.exifDateTimeOriginalNEW, m_pic.exifDateTimeDigitizedNEW, m_pic.tiffDateTimeNEW,
          m_pic.fileCreationDateNEW, m_pic.fileModificationDateNEW}) {
        if (date && !date->isSentinel() && !DateStampCodec::isWritableDate(*date))
            return false;
    }
    return true;
}

bool PicSaver::proveStoredBytes(bool saving, bool success, FileReader *file)
{
    if (success && !StoredBytes::areUnchanged(m_pic.singlePicAttributes, *file)) {
        m_pic.fileUnchangedState = 4;
        return invalidPicErrorID(SaveErrorId::SaveChanged, SaveErrorId::CheckChanged, saving);
    }
    // Bytes that a newer version of the system reads differently are not written over.
    if (success && m_pic.fileUnchangedState == 5)
        return invalidPicErrorID(SaveErrorId::SaveChanged, SaveErrorId::CheckChanged, saving);
    return success;
}

bool PicSaver::visitDependent(bool saving, bool success)
{
    MySinglePic *dependent = m_pic.bundleDependentImage;
    return !dependent || PicSaver(*dependent, m_env)
                             .validatePicWithSavingChanges(saving, ItemAndDependent, success);
}

bool PicSaver::saveDependentFirst(int onlySaveFilesOfType)
{
    MySinglePic *dependent = m_pic.bundleDependentImage;
    return onlySaveFilesOfType == ItemOnly || !dependent ||
           PicSaver(*dependent, m_env).validatePicWithSavingChanges(true);
}

bool PicSaver::areTimesDue() const
{
    return m_pic.isThisTimeUnsaved() ||
           m_env.settings.options.isSavingPhotosWithoutDateChangesEnabled;
}

bool PicSaver::savePhoto(bool saving, int onlySaveFilesOfType, bool success, FileReader *file)
{
    success = proveStoredBytes(saving, success, file);
    if (!saving || !success) {
        const bool dependentValid = visitDependent(saving, success);
        return success && dependentValid;
    }

    const bool dependentSaved = saveDependentFirst(onlySaveFilesOfType);
    const bool locationDue = m_pic.hasLocationChange() || m_pic.hasSaveErrorLocation();
    // A place the file's GPS tags can take is written in place with the dates; any other goes
    // through exiftool first.
    PlannedSave probe;
    const bool locationInPlace =
        locationDue && StampEdits(m_pic, m_env.settings).planPhotoLocation(probe);
    if (locationDue) {
        if (!m_env.exiftool.saveLocationChange(m_pic, locationInPlace))
            return false;
    } else if (!dependentSaved) {
        return false;
    }

    if (!keepCreationDateInTags())
        return false;
    PlannedSave plan = StampEdits(m_pic, m_env.settings).planPhoto();
    if (m_pic.shouldAddExifDateTimeTags || plan.needsXmpExtension) {
        const bool tagsAdded =
            !m_pic.shouldAddExifDateTimeTags || m_env.exiftool.completeFullExifDateTags(m_pic);
        if (!tagsAdded ||
            (plan.needsXmpExtension &&
             !m_env.exiftool.extendShortXmpDateTags(m_pic, plan.supportStamps)))
            return false;
        plan = StampEdits(m_pic, m_env.settings).planPhoto();
    }
    if (plan.stampsOutOfPlace && areTimesDue()) {
        m_pic.tagAddType = plan.stampsOutOfPlace;
        if (!m_env.exiftool.completeFullExifDateTags(m_pic))
            return false;
        plan = StampEdits(m_pic, m_env.settings).planPhoto();
    }

    const bool datesFollowLocation =
        locationDue && m_env.settings.options.dateChangeTypeAtLocationOnlyChanges != 1;
    const bool datesDue = areTimesDue() || datesFollowLocation;
    if (!datesDue)
        plan = {};
    if (locationInPlace && !StampEdits(m_pic, m_env.settings).planPhotoLocation(plan)) {
        // exiftool moved the GPS tags while it added others: it writes the place too.
        if (!m_env.exiftool.saveLocationChange(m_pic, false))
            return false;
        plan = datesDue ? StampEdits(m_pic, m_env.settings).planPhoto() : PlannedSave{};
    }
    if (!datesDue && plan.edits.empty()) {
        // The file holds these values already.
        for (const auto &taken : plan.whenSaved)
            taken();
        return true;
    }
    return writeAndFinish(std::move(plan));
}

bool PicSaver::saveMovie(bool saving, bool success, FileReader *file)
{
    success = proveStoredBytes(saving, success, file);
    if (!saving || !success)
        return success;
    const bool locationDue = m_pic.hasLocationChange() || m_pic.hasSaveErrorLocation();
    const bool datesDue = areTimesDue() ||
                          (locationDue && m_env.settings.options.dateChangeTypeAtLocationOnlyChanges != 1);
    StampEdits stamps(m_pic, m_env.settings);
    PlannedSave plan = datesDue ? stamps.planMovie() : PlannedSave{};
    // A place text of the common form takes the new location in place; others need exiftool.
    if (locationDue && !stamps.planMovieLocation(plan) &&
        !m_env.exiftool.saveLocationChange(m_pic, false))
        return false;
    if (!datesDue && plan.edits.empty()) {
        return true;
    }
    if (plan.needsExiftool) {
        m_env.errors.addToolError(
            ToolStep::WriteMovieDates, m_pic,
            QCoreApplication::translate("SaveErrors", "a movie date does not fit its stamp in place"));
        return false;
    }
    return writeAndFinish(std::move(plan));
}

bool PicSaver::saveFile(bool saving, int onlySaveFilesOfType, bool success)
{
    if (!saving || !success)
        return success;
    if (!saveDependentFirst(onlySaveFilesOfType))
        return false;
    const bool locationDue = m_pic.hasLocationChange() || m_pic.hasSaveErrorLocation();
    if (locationDue && !m_env.exiftool.saveLocationChange(m_pic, false))
        return false;
    if (m_pic.shouldAddExifDateTimeTags && !m_env.exiftool.completeFullExifDateTags(m_pic))
        return false;
    if (!areTimesDue() && !locationDue)
        return true;
    if (!keepCreationDateInTags())
        return false;
    return writeAndFinish({});
}

bool PicSaver::isCreationDateLost() const
{
    return m_pic.isDatedByFileCreation() && m_pic.fileCreationDateNEW &&
           !(m_pic.fileCreationDateOLD && m_pic.fileCreationDateNEW->wholeSeconds() ==
                                              m_pic.fileCreationDateOLD->wholeSeconds());
}

bool PicSaver::keepCreationDateInTags()
{
    // exiftool writes no date into other movies; a header the user's option passes over would
    // be passed over again at the next import.
    const bool takesTags =
        !m_pic.isMovie() || (m_pic.spType == SpTypeMovieFileDate &&
                             (m_pic.fileFormatType == QuickTimeMovieFormat ||
                              m_pic.fileFormatType == Mpeg4MovieFormat));
    if (!isCreationDateLost())
        return true;
    // A movie that can take no date tags keeps its new date in its modification time alone, as a
    // file whose owner declined added tags does.
    if (!takesTags || !m_env.exiftool.mayAddDateTagsToFileDatedItems()) {
        m_keepsFileDateOnly = true;
        return true;
    }
    return m_env.exiftool.addDateTagsForFileDate(m_pic);
}

bool PicSaver::saveRating()
{
    const std::optional<int> rating = m_pic.xmpRatingToWrite();
    if (!rating)
        return true;
    if (!ExiftoolSteps::ratingGoesToSidecar(m_pic, m_env.settings.options.addRawLocationsOnlyInSidecars)) {
        const FileReader file(m_pic.spPath());
        const auto [format, start] = m_pic.xmpPacketSearch();
        std::optional<std::vector<ByteEdit>> edits =
            file.isOpen() ? MySingleFolderDataReader().xmpRatingEdits(file, format, start, *rating)
                          : std::nullopt;
        if (edits) {
            PlannedSave plan;
            plan.edits = std::move(*edits);
            plan.touchesXmp = true;
            MySinglePic *pic = &m_pic;
            plan.whenSaved.push_back([pic, value = qint8(*rating)] { pic->fileRating = value; });
            const std::optional<FileTime> before = FileTime::modificationOf(m_pic.spPath());
            return before && writePlanned(std::move(plan), before, WriteKind::Rating);
        }
    }
    return m_env.exiftool.saveRatingChange(m_pic, *rating);
}

bool PicSaver::writeAndFinish(PlannedSave plan)
{
    // Where the creation date is the item's date, a creation date the file system cannot take
    // would lose the change at the next import: unless the user chose the modification date
    // alone over added tags, the item stays pending, and its file untouched.
    if (isCreationDateLost() && !m_keepsFileDateOnly)
        return invalidPicErrorID(SaveErrorId::FileDatesNotSet, SaveErrorId::FileDatesNotSet, true);
    const std::optional<FileTime> after =
        m_pic.fileModificationDateNEW ? std::optional(FileTime::fromInstant(*m_pic.fileModificationDateNEW))
                                      : std::nullopt;
    return writePlanned(std::move(plan), after, WriteKind::Dates);
}

bool PicSaver::writePlanned(PlannedSave plan, std::optional<FileTime> after, WriteKind kind)
{
    const QString path = m_pic.spPath();
    if (m_pic.fileFormatType == PngFormat && !plan.edits.empty()) {
        FileReader unwritten(path);
        PngLocator chunks(unwritten);
        std::vector<ByteEdit> checksums;
        for (const auto &[touched, kind] :
             {std::pair(plan.touchesExif, PngLocator::ChunkKind::Exif),
              std::pair(plan.touchesXmp, PngLocator::ChunkKind::Xmp)}) {
            if (const std::optional<ByteEdit> checksum =
                    touched ? chunks.chunkCrcEdit(kind, plan.edits) : std::nullopt)
                checksums.push_back(*checksum);
        }
        plan.edits.insert(plan.edits.end(), checksums.begin(), checksums.end());
    }
    // The modification time the file has now, to the nanosecond, so that an undo restores it.
    const std::optional<FileTime> before = FileTime::modificationOf(path);
    if (!before)
        return invalidPicErrorID(SaveErrorId::SaveCannotOpen, SaveErrorId::CheckCannotOpen, true);
    std::vector<ByteEdit> edits = std::move(plan.edits);
    // A journaled run commits every file together once all are planned; otherwise the file is
    // written now.
    if (m_env.journal) {
        MySinglePic *pic = &m_pic;
        SaveEnvironment *environment = &m_env;
        m_env.journal->plan(
            {path, StoredBytes::proof(m_pic.singlePicAttributes, m_pic.singlePicAttributes.NSFileSize.value_or(-1)),
             std::move(edits), *before, after,
             [pic, environment, kind, whenSaved = std::move(plan.whenSaved), damaged = plan.damagedTags,
              failedType = saveErrorTypeIfFailed()](bool written, bool dateSet) {
                 if (!PicSaver(*pic, *environment).finishPlanned(kind, written, dateSet, whenSaved, damaged) &&
                     kind == WriteKind::Dates)
                     pic->saveErrorType = failedType;
             }});
        return true;
    }
    const std::unique_ptr<InPlaceWriter> writer = m_env.disk.openForUpdate(path);
    bool written = writer && writer->apply(std::move(edits));
    // Only the modification date can be set here, after the bytes, whose writing moved it. No
    // call sets a birth time on Linux: a file system that keeps one keeps the old one.
    const bool dateSet = written && (!after || writer->setModificationTime(*after));
    written = written && writer->synchronize();
    // The writer puts the bytes back on a failure; the date their writing moved goes back too.
    if (writer && !written)
        writer->setModificationTime(*before);
    return finishPlanned(kind, written, dateSet, plan.whenSaved, plan.damagedTags);
}

bool PicSaver::finishPlanned(WriteKind kind, bool written, bool dateSet,
                             const std::vector<std::function<void()>> &whenSaved, bool damagedTags)
{
    if (kind == WriteKind::Dates)
        return finishWrite(written, dateSet, whenSaved, damagedTags);
    if (!written) {
        m_env.errors.addErrorID(SaveErrorId::SaveCannotOpen, m_pic);
        return false;
    }
    for (const auto &taken : whenSaved)
        taken();
    return true;
}

bool PicSaver::finishWrite(bool written, bool dateSet, const std::vector<std::function<void()>> &whenSaved,
                           bool damagedTags)
{
    if (!written)
        return invalidPicErrorID(SaveErrorId::SaveCannotOpen, SaveErrorId::CheckCannotOpen, true);
    for (const auto &taken : whenSaved)
        taken();
    if (damagedTags)
        m_env.errors.addErrorID(SaveErrorId::DamagedTagLeft, m_pic);
    storeFileAttributes();
    if (!dateSet)
        return invalidPicErrorID(SaveErrorId::FileDatesNotSet, SaveErrorId::FileDatesNotSet, true);
    takeSavedState();
    return true;
}

quint64 PicSaver::saveErrorTypeIfFailed() const
{
    const bool timesDue = m_env.settings.options.isSavingPhotosWithoutDateChangesEnabled ||
                          m_pic.isThisPureTimeUnsaved();
    const bool locationDue = m_pic.hasLocationChange() || m_pic.hasSaveErrorLocation();
    return (locationDue ? quint64(SaveErrorLocation) : 0) | (timesDue ? quint64(SaveErrorTime) : 0) |
           (m_pic.shouldAddExifDateTimeTags ? quint64(SaveErrorTagAdd) : 0);
}

void PicSaver::storeFileAttributes()
{
    const std::optional<FileAttributes> now = FileAttributes::read(m_pic.spPath());
    if (!now)
        return;
    PicAttributes &a = m_pic.singlePicAttributes;
    a.NSFileCreationDate = m_pic.fileCreationDateOLD = now->creationDate;
    a.NSFileModificationDate = m_pic.fileModificationDateOLD = now->modificationDate;
    a.NSFileSize = now->size;
}

void PicSaver::takeSavedState()
{
    if (m_pic.spDateTimeModified_tempFIX)
        m_pic.spDateTimeOriginal = m_pic.spDateTimeModified_tempFIX;
    // An empty tag that now holds the date is a tag like any other.
    if (m_pic.isNullerFile() && isPhotoType(m_pic.spType))
        m_pic.spType = SpTypeExifOriginal + (m_pic.spType - SpTypeEmptyOriginalFileDate) % 3;
    // A movie header of zeros now holds the date.
    if (m_pic.spType == SpTypeMvhdZeroFileDate || m_pic.spType == SpTypeMvhdZeroFixedDate)
        m_pic.spType = SpTypeMvhdCreation;
    m_pic.isUnsavedDueToTZC = false;
}

} // namespace orv
