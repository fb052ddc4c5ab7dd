#pragma once

#include "core/FolderFacts.h"
#include "core/PicScanner.h"
#include "folders/FolderTimeZones.h"
#include "folders/FolderToken.h"
#include "folders/ImportErrors.h"
#include "folders/ImportKeyStates.h"
#include "core/ImportOptions.h"
#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QList>
#include <QMap>
#include <QMutex>
#include <QSet>
#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace orv {

class DateSequence;
class ImportFilter;
class MySinglePic;

// The folder offset as the five date controls show it: "dmDirection" ("+" or "-"), "dmDays",
// "dmHours", "dmMinutes", "dmSeconds", all text.
using DateModifications = QMap<QString, QString>;
namespace dateModificationKey {
inline const QString direction = QStringLiteral("dmDirection");
inline const QString days = QStringLiteral("dmDays");
inline const QString hours = QStringLiteral("dmHours");
inline const QString minutes = QStringLiteral("dmMinutes");
inline const QString seconds = QStringLiteral("dmSeconds");
} // namespace dateModificationKey

// One imported directory: it owns its items and holds the date offset that applies to them
// as a whole, its zones, its import state and the counts the rest of the system reads instead of
// walking the items. Counters, items and zones change on the main thread; a scan hands what it
// made back to be published there, and takes only the batches of imagesToImport. A save run's
// threads write the saved state of its items (and count their errors here) while the owner
// refuses changes and the views read no item; the folder's end comes back to the main thread.
class MySingleFolder : public FolderFacts
{
public:
    enum MediaTypesState : qint64 { NoMedia = 0, ImagesOnly = 1, MoviesOnly = 2, ImagesAndMovies = 3 };
    static constexpr quint16 noColorIndex = 65535;
    // Item coder version of a folder that was connected when made.
    static constexpr qint64 currentConnectedState = 90;
    // tempFullMediaCountBeforeImport of a folder's first import.
    static constexpr qint64 firstImportMarker = -5;

    MySingleFolder(const QString &path, bool separateMode);
    ~MySingleFolder();

    MySingleFolder(const MySingleFolder &) = delete;
    MySingleFolder &operator=(const MySingleFolder &) = delete;

    // The folder that owns an item; every item's folder is one.
    static MySingleFolder *of(const MySinglePic &pic);

    // --- The directory and the access to it ---
    QString sfLastKnownFolderPath;
    FolderToken sfSecBookmark;
    FolderAccessError errorType = FolderAccessError::None;
    bool didProcessUnlockError = false;
    bool isDisconnected = false;
    bool isReconnectionHandled = false;
    int folderFileDescriptor = -1;
    qint64 lastConnectedState = currentConnectedState;
    OptionalDate lastKnownModDateTime;

    // The folder's path with access open, after re-resolving its token: empty when the
    // directory cannot be reached. A failure is handled once (didProcessUnlockError) and marks a
    // folder with items as disconnected; the next success clears it and takes the directory's
    // present path. Safe from any thread.
    QString unlockedSecUrl();
    // The directory can be written and, with checkingTrashed, is not in the trash.
    bool isWriteableCheckingTrashed(bool checkingTrashed);

    // --- Import ---
    bool isImportSheetDone = false;
    bool isMovieImportSheetDone = false;
    // Both written on the main thread only: a scan reads them in its ImportScope, taken when it
    // starts, and its result sets them when it is published.
    bool isAdvanced = false;     // holds only some of the directory's files
    bool isAdvancedOver = false; // a partial folder being widened to the whole directory
    std::atomic<bool> shouldStopImport{false};
    KeyStatesAtImport keyStatesAtImport;
    ImportOptions perFolderImportOptions;
    QList<ImportOptions> perImportImportOptions; // one per pending import run, oldest first
    qint64 importDepth = 0;                       // below the dropped folder; -1 unlimited
    qint64 tempFullMediaCountBeforeImport = 0;
    qint64 folderSortGeneral = 0;
    ImportErrors importErrors;
    QSet<QString> gpxAddedPaths;
    // Sidecars seen by the scan, matched to their items once the folder is read.
    QSet<QString> xmpSidecarPaths, aaeSidecarPaths;
    // The directories above this one in the running import, to refuse a subfolder that leads back.
    QList<FileIdentity> importAncestors;
    std::shared_ptr<DateSequence> picsDelayedAtImportDueToCombAction;

    // What a scan of this folder starts from, and the taking back of what it gathered: the
    // stepped options, the fixed dates, the tracks and sidecars. Both on the main thread.
    ItemScanContext itemScanContext();
    void takeScanContext(const ItemScanContext &items);

    // Batches of file names waiting for a partial import, guarded by their own lock.
    void addImagesToImport(const QStringList &names, const ImportFilter &filter);
    // A batch of names to import, and whether the import filter left some of them out.
    struct ImportBatch
    {
        QStringList names;
        bool narrowedByFilter = false;
    };
    std::optional<ImportBatch> takeImagesToImport();
    bool hasImagesToImport() const;
    void clearImagesToImport();

    // --- Items ---
    // Masters and ungrouped items, in import order. Dependents are reached through their master.
    QList<MySinglePic *> sfPicDetails_fullArray;
    QList<MySinglePic *> bundleDependentsRawAndJPG;
    QList<MySinglePic *> bundleDependentsLivePhotos;
    QSet<const MySinglePic *> quickSelection;

    qsizetype count() const { return sfPicDetails_fullArray.size(); }
    MySinglePic *sfPicDetailsAtIndex(qsizetype index) const { return sfPicDetails_fullArray.at(index); }
    qsizetype fullMediaCount() const;
    QList<MySinglePic *> sortedSfPicDetails_Full() const;
    qint64 sfFromIndexInSource() const;
    qint64 sfTillIndexInSource() const;

    // Takes ownership; a master or single item also joins the visible list.
    MySinglePic *adoptPic(std::unique_ptr<MySinglePic> pic, bool visible = true);
    // Gives an item, with its group's dependent, to another folder: it leaves this folder's lists,
    // zones and quick selection, and joins the other's at `index` of its visible list (the end
    // when beyond it). The caller recounts both folders.
    void handOverPic(MySinglePic &master, MySingleFolder &target, qsizetype index);
    // The file names of all items the folder owns, dependents and sidecars included.
    QSet<QString> itemNames() const;

    // --- Counts ---
    qint64 sfPics = -1; // -1 until the first import has finished
    qint64 singlePicModeImages = 0;
    qint64 firstChangedPicIndex = -1;
    qint64 lastChangedPicIndex = -2;
    qint64 locationMovedImages = 0;
    qint64 ofWhichAddedByTrack = 0;
    qint64 exifDateTimeAddedImages = 0;
    qint64 distinctChanges = 0;
    int fixedDates = 0;
    int renameErrors = 0;
    int keepers = 0;
    int rejects = 0;
    qint64 imageCounter = 0;
    qint64 mediaTypesState = NoMedia;
    quint16 colorIndex = noColorIndex;
    OptionalDate sfFrom, sfTill;

    // Item count, first and last date. When the last item has left a folder in folder mode
    // outside a re-import, its offset goes back to zero.
    void sfUpdatePicsFromAndTill(bool isReimportRunning = false);
    // Recounts media kinds, moved locations, tags to add, keepers and rejects, and the zone state
    // after items changed.
    void updateFolderValuesOnPicMove();
    void recountKeepersAndRejects();

    bool isUnsavedFolder() const;
    bool isUnsavedFolderIgnoringErrorsAndFixedDates() const;
    qint64 unsavedImagesCount() const;
    bool isInconsistent() const;
    bool hasQTMvhd() const;
    bool hasGroupHarmonizationRelevancy() const { return !bundleDependentsRawAndJPG.isEmpty(); }

    // --- Edit mode and offset ---
    DateModifications sfDateModifications;
    bool hasChangedDirection = false;
    bool tempHasChangedDirection = false;
    qint64 hasDSTJumperType = 0;

    bool isDateModified() const;
    bool isTogetherDateUIModified() const;
    // 1 together, 2 separate, 3 and 4 the same for slideshow-only folders.
    int folderSortMode() const { return sfEditMode + (isEXIFIgnored() ? 2 : 0); }

    // The five texts as given; the interval follows from them.
    void setDirection(const QString &direction, const QString &days, const QString &hours, const QString &minutes,
                      const QString &seconds);
    // The interval; the texts follow. A zero interval keeps the direction given, so "-0" stays.
    void setSfDateModificationsFromTimeInterval(double interval, bool direction);

    // Separate mode: moves one item by a difference. Items whose dates are never edited stay.
    void updateSinglePicModificationBy(MySinglePic &pic, double difference);
    // Separate mode: the item's own offset becomes exactly value, its group's dependent takes the
    // same, and singlePicModeImages follows. Undo restores through it.
    void setSinglePicModification(MySinglePic &pic, double value);
    // Every item loses its own offset, except one whose last save failed on its time: the next
    // save must retry it.
    void clearSinglePicModeImages();

    // --- Time zones ---
    FolderTimeZones sourceTimeZones;
    FolderTimeZones targetTimeZones;
    bool isUnsavedDueToTZC = false;

    // Nothing for a zone name the tz database does not know.
    std::optional<TimeZone> sourceTimeZoneForPic(const MySinglePic &pic) const;
    std::optional<TimeZone> targetTimeZoneForPic(const MySinglePic &pic,
                                                 const std::optional<TimeZone> &knownSource = std::nullopt) const;
    // The names behind them, with the folder forms resolved; nothing stands for the system zone.
    std::optional<QString> sourceTimeZoneNameForPic(const MySinglePic &pic) const;
    std::optional<QString> targetTimeZoneNameForPic(const MySinglePic &pic) const;
    static bool validateTZCUnsavedForPic(const MySinglePic &pic, const std::optional<QString> &source,
                                         const std::optional<QString> &target);
    void validateTZCUnsaved();
    void cleanupTimeZones();
    // An adapted zone from the import sheet, taken only by a folder without zones yet.
    void setTZDefaultsSource(const QString &zone, bool useAltMode);

    // --- Groups, movies, tracks ---
    qint64 rawJpgDisplayType = -1;
    QSet<QString> linkedTracksKeys;

    // The group settings take their defaults once, when the folder's first groups have formed;
    // a folder without groups keeps -1, which reads as 0.
    void fixGroupSettings(const ImportOptions &defaults);

private:
    std::vector<std::unique_ptr<MySinglePic>> m_ownedPics;
    mutable QMutex m_imagesToImportLock;
    QList<ImportBatch> m_imagesToImport;
    QMutex m_accessLock;
};

} // namespace orv
