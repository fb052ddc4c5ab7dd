#pragma once

#include "formats/FileFormatType.h"
#include "core/CameraGear.h"
#include "core/MoviePositions.h"
#include "core/PicLocation.h"
#include "formats/PicAttributes.h"
#include "time/Instant.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <limits>
#include <memory>
#include <optional>

namespace orv {

struct FolderFacts;

// Date source of an item: which value its spDateTimeOriginal came from.
enum SpType : int {
    SpTypeExifOriginal = 1,
    SpTypeExifDigitized = 2,
    SpTypeTiffDateTime = 3,
    SpTypeFileDatePreferredOverTiff = 4,
    SpTypeEmptyOriginalFileDate = 5,
    SpTypeEmptyDigitizedFileDate = 6,
    SpTypeEmptyTiffFileDate = 7,
    SpTypeEmptyOriginalFixedDate = 8,
    SpTypeEmptyDigitizedFixedDate = 9,
    SpTypeEmptyTiffFixedDate = 10,
    SpTypeNoTagsFileDate = 11,
    SpTypeNoTagsImportOptionDate = 12,
    SpTypeUnsupportedPhoto = 13,
    SpTypeMovieFileDate = 14,
    SpTypeRiff = 15,
    SpTypeMvhdCreation = 16,
    SpTypeMvhdModification = 17,
    SpTypeFileDatePreferredOverMvhd = 18,
    SpTypeMvhdZeroFileDate = 19,
    SpTypeMvhdZeroFixedDate = 20,
    SpTypeMdta = 21,
    SpTypeMovieExifIgnored = 22,
    // IPTC's creation date: the IIM DateCreated and TimeCreated of a JPEG, or their XMP home
    // photoshop:DateCreated standing alone; the first date slot holds it.
    SpTypeIptcDateCreated = 23,
};

enum SaveErrorBits : quint64 { SaveErrorLocation = 1, SaveErrorTagAdd = 2, SaveErrorTime = 4 };
enum TagAddBits : quint64 { TagAddExifOriginal = 1, TagAddExifDigitized = 2, TagAddTiffDateTime = 4 };
enum NormalizationBits : quint64 { NormalizationMetaOrder = 1, NormalizationFileDates = 4 };
// The three metadata date slots as bits, in the order creation, digitized, modification.
enum DateSlotBits : quint64 { DateSlotCreation = 1, DateSlotDigitized = 2, DateSlotModification = 4 };
enum MajorDifferenceBits : quint64 {
    MajorDifferenceStampOffset = 1,
    MajorDifferenceGroupLocality = 2,
    MajorDifferenceGroupDates = 4,
};

// One photo or movie of an imported folder: every date the file carries as OLD (what the file
// says) and NEW (what a save would write), the source chosen as the item's date, and the byte
// facts a save must prove before it writes. Plain data plus the values derived from it; the
// byte work that fills or writes it lives in the scan and save classes.
class MySinglePic
{
public:
    MySinglePic(const QString &name, FolderFacts *folder, int type, OptionalDate date);

    MySinglePic(const MySinglePic &) = delete;
    MySinglePic &operator=(const MySinglePic &) = delete;

    static constexpr double notSetAccuracy = std::numeric_limits<double>::max();

    // The members are ordered by size so that 100,000 items stay small: pointers, texts and
    // dates first, then four-byte numbers, then the byte-sized states and flags. Bit sets and
    // small states take the narrowest integer their values need.

    // --- Identity and file ---
    QString spName;
    QStringList spSidecarExtensions;
    FolderFacts *spSingleFolder = nullptr;
    MySinglePic *bundleDependentImage = nullptr;
    MySinglePic *bundleMasterImage = nullptr;

    // --- Camera ---
    // Shared between the items of one camera (see PicScanner), so it costs no text per item.
    QString pivMakeModel = QStringLiteral("-");
    QString UUID;
    // Serial numbers and lens; none when the file names none.
    std::shared_ptr<const CameraGear> pivGear;
    ShotSettings pivShotSettings;

    // --- Dates ---
    OptionalDate spDateTimeOriginal;
    OptionalDate exifDateTimeOriginalOLD, exifDateTimeOriginalNEW;
    OptionalDate exifDateTimeDigitizedOLD, exifDateTimeDigitizedNEW;
    OptionalDate tiffDateTimeOLD, tiffDateTimeNEW;
    OptionalDate fileCreationDateOLD, fileCreationDateNEW;
    OptionalDate fileModificationDateOLD, fileModificationDateNEW;
    OptionalDate spGpsUTCDate;
    OptionalDate spDateTimeModified_tempFIX;
    OptionalDate lastCheckedAt;
    double singlePicModification = 0.0;

    // --- Live preview of a change; never a pending edit ---
    // The timeline time the item would take (that of its sortPic), and the move that gives it;
    // empty outside a preview and wherever the present date stands.
    OptionalDate tempTimeDuringLiveMod;
    double tempMoveDateByDuringLiveMod = 0.0;
    // Where the item stands on a timeline: its preview date while a preview runs.
    OptionalDate tempTimeDuringLiveModCompleted() const
    {
        return tempTimeDuringLiveMod ? tempTimeDuringLiveMod : spDateTimeModified_sort();
    }

    // --- Location ---
    std::optional<double> gpsLat, gpsLong;
    std::optional<double> gpsLatOld, gpsLongOld;
    double newLocationHAccuracy = notSetAccuracy;
    // Metres above sea level of a location the user gave, for the save to write; notSetAccuracy
    // when none was given.
    double newLocationAltitude = notSetAccuracy;

    // --- Places from tracks ---
    // The key of the track that supplied the present location, empty when none did, and that
    // key at the last save; what the item held before the track placed it, put back when the
    // track lets go (after a save: what the file holds).
    QString locAddedByTrackKey;
    QString lastSave_locAddedByTrackKey;
    std::unique_ptr<PicLocation> locationBeforeTrack;

    // --- Movie ---
    double movDuration = -1.0;
    // Where the movie stands and the positions remembered in it; none for most items.
    std::unique_ptr<MoviePositions> moviePositions;

    // --- Bytes ---
    PicAttributes singlePicAttributes;
    quint32 tiffHeaderStartOffset = 0xFFFFFFFF;

    // --- Four-byte numbers ---
    quint32 sessionUniqueId = 0;
    FileFormatType fileFormatType = UnknownFormat;
    int spType = 0;
    qint32 pivImageWidth = -1;
    qint32 pivImageHeight = -1;
    // Positions in the source and the folder, full and filtered; -1 outside them.
    qint32 indexInSource_full = -1, indexInSource_filtered = -1;
    qint32 indexInFolder_full = -1, indexInFolder_filtered = -1;

    // --- Byte-sized states ---
    // What the movie's header said: 15 an AVI stamp, 16 a good creation date, 17 only a good
    // modification date, 19 both zero; 0 no header read.
    qint8 movieType = 0;
    qint8 fileUnchangedState = 0;
    qint8 hasAddedLocation = 0;             // 0 from the file, 1 by the user, 2 by a track
    qint8 linkedToFolderTracksType = 0;     // > 0: the item follows its folder's tracks
    qint8 usesAltTimeAtAmbiguityReason = 0; // not 0: the user chose the other hour of a repeated one
    qint8 dstOffsetState = 0;               // timeline marker cache: 0 unknown, -1, 1, 2
    qint8 marker = 0;
    // The xmp:Rating the file (its packet or its sidecar) held when read, or that a save wrote
    // last: -1 to 5; none when it holds none.
    std::optional<qint8> fileRating;
    quint8 majorDateDifferenceType = 0;     // MajorDifferenceBits
    quint8 dstDivergenceState = 0, dstAmbiguityAtExportState = 0, dstAmbiguityAtImportState = 0; // DateSlotBits
    quint8 saveErrorType = 0;               // SaveErrorBits
    quint8 tagAddType = 0;                  // TagAddBits
    quint8 normalizationType = 0;           // NormalizationBits

    // --- Flags ---
    bool tiffHeaderType = false; // Intel order
    bool isExtensionHidden = false;
    bool isMovedToTrash = false;
    // The content identifiers of this item and its Live Photo partner were compared and agree.
    bool isLivePhotoUUIDValidated = false;
    bool isCreaXmp = false, isDigiXmp = false, isModiXmp = false, hasModiXmp = false;
    bool isGpsXmp = false;
    bool isUnsavedDueToTZC = false;
    bool shouldAddExifDateTimeTags = false, didAddExifDateTimeTags = false;
    bool hasMinorDateDifference = false;
    bool shouldReSaveLoc = false;
    bool isTrackLinkingPrevented = false; // the user or a rule cut the item off from tracks
    bool isInvalidDueToChangesAfterImport = false;
    bool isVerifiedDuringSave = false;
    bool isAffectedBySave = false;
    bool isKeeper = false, isRejected = false;
    bool isPossibleBundlePic = false;
    bool isPossibleBundlePicTemp = false;

    // --- Derived values ---
    // The parts of pivGear, empty where it names none.
    const QString &pivBodySn() const;
    const QString &pivMakeModelLens() const;
    const QString &lensSn() const;
    QString spPath() const;
    // The name without its last extension.
    QStringView spBaseName() const;
    // The sidecars beside the file: its base name with each of spSidecarExtensions; for a
    // dependent whose XMP lies with its master, that XMP.
    QStringList spSidecarPaths() const;
    // spSidecarExtensions' one entry on a dependent whose XMP sidecar went to its master.
    static inline const QString isXmpMaster = QStringLiteral("isXmpMaster");
    // A dependent's xmp goes to its master; otherwise the extension joins the sorted list once.
    void addSidecarExtension(const QString &extension);
    // The names of the files that go with this one: sidecars, and a master's dependent.
    QStringList spSidecarFiles() const;
    // The XMP sidecar whose dates are this item's; empty when it has none.
    QString spXMPPath() const;
    OptionalDate spDateTimeModified() const;
    OptionalDate singlePicModeDate() const;
    const MySinglePic *sortPic() const;
    OptionalDate spDateTimeOriginal_sort() const { return sortPic()->spDateTimeOriginal; }
    OptionalDate spDateTimeModified_sort() const { return sortPic()->spDateTimeModified(); }

    bool isMovie() const { return spType >= 14 && spType <= 22; }
    bool isQtMovie() const { return spType >= 16 && spType <= 21; }
    bool isNullerFile() const { return (spType >= 5 && spType <= 10) || spType == 19 || spType == 20; }
    bool hasImportOptionChanges() const { return isNullerFile() || spType == 12; }
    bool isPreferringFileDate() const { return spType == 4 || spType == 18; }
    // The item's date is its file's creation date: no date tag holds it.
    bool isDatedByFileCreation() const
    {
        return spType == SpTypeNoTagsFileDate || spType == SpTypeNoTagsImportOptionDate ||
               spType == SpTypeMovieFileDate || isPreferringFileDate();
    }
    bool takesEdits() const { return spType != SpTypeUnsupportedPhoto && spType != SpTypeMovieExifIgnored; }
    bool isRaw() const { return fileFormatType == RawFormat; }
    bool hasXmpSidecar() const { return spSidecarExtensions.contains(QStringLiteral("xmp"), Qt::CaseInsensitive); }
    // Zone form of the XMP stamp the item's date came from; 0 when that date is no XMP stamp.
    int sourceXmpDateType() const;
    // fileUnchangedState of master and dependent folded into one.
    qint64 bundleUnchangedState() const;

    bool hasSaveError() const { return saveErrorType != 0; }
    bool hasSaveErrorTime() const { return saveErrorType & SaveErrorTime; }
    bool hasSaveErrorLocation() const { return saveErrorType & SaveErrorLocation; }
    bool hasSaveErrorTagAdd() const { return saveErrorType & SaveErrorTagAdd; }
    bool hasBundleSaveError() const;
    bool needsNormalization() const { return normalizationType & (NormalizationMetaOrder | NormalizationFileDates); }
    bool hasMajorDateDifference() const
    {
        return majorDateDifferenceType & (MajorDifferenceStampOffset | MajorDifferenceGroupLocality);
    }

    bool isThisUnsaved(bool ignoringSaveError, bool ignoringImportOptionChanges) const;
    bool isUnsavedIgnoringSaveError(bool ignoringSaveError, bool ignoringImportOptionChanges) const;
    bool isUnsaved() const { return isUnsavedIgnoringSaveError(false, false); }
    bool isThisTimeUnsaved() const;
    bool isThisPureTimeUnsaved() const;
    bool hasLocationChange() const;
    // The xmp:Rating a save writes into this item's file so that other programs see the item's
    // rating: 5 a keeper, -1 a reject, 0 (which XMP defines as unrated) a neutral item whose file
    // says keeper or reject. A group is rated as one, through its master, and its still files
    // all take the rating; a Live Photo's movie does not, its XMP being its still's. Nothing
    // while the group's rating is still what its files said at import (as the import joined
    // them), and nothing for a file that says so already.
    std::optional<int> xmpRatingToWrite() const;
    // The rating this item's group writes first: its own, else its dependent's.
    std::optional<int> groupXmpRatingToWrite() const;
    // Where a reader finds the XMP packet in the item's own file: the container's format and
    // the offset to start from.
    std::pair<int, quint32> xmpPacketSearch() const;
    // The file holds the item's location now: nothing waits to be written.
    void takeSavedLocation();
    // The item takes a new location, added by the user (1) or a track (2); the one it had waits
    // as gpsLatOld until the save. A movie whose place text has few digits takes the place
    // rounded to them. Altitude and accuracy are notSetAccuracy when not given.
    void takeNewLocation(double latitude, double longitude, double altitude, double accuracy, qint8 addedBy);
    bool isLinkedToFolderTracks() const { return linkedToFolderTracksType > 0; }
    // The fraction digits of latitude and longitude a new location keeps, so that it fits the
    // place text a movie holds in place; nothing where any count fits.
    struct LocRounding
    {
        int latitudeDigits = 0;
        int longitudeDigits = 0;
    };
    std::optional<LocRounding> needsLocRounding() const;
    bool hasLocationChangeIgnoringSpecialCases(bool addRawLocationsOnlyInSidecars) const;
    bool isGroupHarmonized() const;
    // This system never lets a harmonisation on its own call for a master's re-save.
    bool isBundleMasterAffectedByHarmonization() const { return false; }
    bool isThisHarmonizationChanged() const;

    // Sets or clears bit 4 of majorDateDifferenceType and answers whether the group's dates
    // deviate between a local and a non-local source.
    bool validateGroupDeviations();
    bool isDataSourceLocal() const;
    // The slot's stamp has no offset of its own: no offset tag beside it, or an XMP stamp
    // without a zone.
    bool isStampLocal(DateSlotBits slot) const;
    double differenceFromGPSDate(OptionalDate gpsDate, OptionalDate date) const;

    // Bit 1 of normalizationType: metadata dates out of order.
    void validateMetaNormalization();
    // Bit 4: file modification earlier than creation.
    void validateFilesystemNormalization();

    // Stamp bytes of the slot the item's date came from (original, digitized, TIFF, TIFF for
    // types 1 to 4), and of the fixed slots.
    std::optional<StampRecord> sourceDateExifData() const;
    std::optional<OffsetTagRecord> sourceOffsetExifData() const;
    const std::optional<StampRecord> &digiDateExifData() const { return singlePicAttributes.ExifDateTimeDigitized; }
    const std::optional<StampRecord> &modDateExifData() const { return singlePicAttributes.TIFFDateTime; }
    const std::optional<OffsetTagRecord> &digiOffsetExifData() const { return singlePicAttributes.ExifOffsetTimeDigitized; }
    const std::optional<OffsetTagRecord> &modOffsetExifData() const { return singlePicAttributes.TIFFOffsetTime; }

private:
    static std::atomic<quint32> s_sessionCounter;
};

} // namespace orv
