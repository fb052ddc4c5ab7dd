#pragma once

#include "core/FileAttributes.h"
#include "formats/InPlaceWriter.h"

#include <QtGlobal>

#include <functional>
#include <vector>

namespace orv {

class ExiftoolSteps;
class FileReader;
class FileWriteAccess;
class MySinglePic;
class SaveErrors;
class SaveJournal;
struct PlannedSave;
struct SaveSettings;

// What saving one item needs from the run around it.
struct SaveEnvironment
{
    const SaveSettings &settings;
    SaveErrors &errors;
    FileWriteAccess &disk;
    ExiftoolSteps &exiftool;
    // Where the run plans each file's edits, to commit them together; none in a check, and
    // without one each file is written at once.
    SaveJournal *journal = nullptr;
};

// The save of one item: proves that the file still holds what the import saw and only then
// writes the item's NEW dates into it, in place, in the same number of bytes, and sets the file
// dates. Without saving it only checks, as a rename or a verification does. A group's dependent
// is saved through its master; a dependent that fails keeps its master's dates unwritten.
class PicSaver
{
public:
    // onlySaveFilesOfType: 0 the item and its dependent; 1 only the item; 2 the item is a
    // dependent saved alone.
    enum OnlySave : int { ItemAndDependent = 0, ItemOnly = 1, DependentAlone = 2 };

    PicSaver(MySinglePic &pic, SaveEnvironment &environment) : m_pic(pic), m_env(environment) {}

    // True on success. isWithoutError false: an earlier step failed, the item is not saved but
    // its dependent is still visited.
    bool validatePicWithSavingChanges(bool saving, int onlySaveFilesOfType = ItemAndDependent,
                                      bool isWithoutError = true);

    // Writes the item's rating as xmp:Rating where the file does not say it yet
    // (MySinglePic::xmpRatingToWrite): in place in the file's own XMP packet where it has room,
    // otherwise through exiftool, into the sidecar where the item's places go. The file keeps
    // its modification date. True when nothing was due or the write succeeded (or was planned,
    // in a journaled run).
    bool saveRating();

    // The value for fileUnchangedState, read-only: 0 unchanged, 1 missing, 2 unreadable, 3 file
    // attributes changed, 4 bytes or a sidecar changed, 5 needs a new import. Repeated only when
    // the folder changed since the last check. Needs no run: the verification of outside
    // changes asks it too, on a thread of its own.
    static qint64 updatedUnchangedFileState(MySinglePic &pic);

    // Size equal and both dates within a second. A file system that cannot hold a date before
    // 1970 gives it back as 0, which is no change.
    static bool areTheFileAttributesUnchanged(MySinglePic &pic, const FileAttributes &current);

private:
    bool realValidatePicWithSavingChanges(bool saving, int onlySaveFilesOfType,
                                          bool isWithoutError);
    bool savePhoto(bool saving, int onlySaveFilesOfType, bool success, FileReader *file);
    bool saveFile(bool saving, int onlySaveFilesOfType, bool success);
    bool saveMovie(bool saving, bool success, FileReader *file);
    // Every stored value's bytes are still in the file; answers the success that remains.
    bool proveStoredBytes(bool saving, bool success, FileReader *file);
    bool areTimesDue() const;
    // The item's date is its file's creation date, which changes, and no call sets a birth time
    // on Linux: the next import would read the old date.
    bool isCreationDateLost() const;
    // Such a date goes into date tags the file did not have, where the user allows them. False
    // when the tags could not be added. Where the user declined them, only the modification date
    // takes the new date; where no tag can hold it, the item fails where its file dates are set.
    bool keepCreationDateInTags();
    // Every NEW date lies within the dates a file can hold; otherwise nothing is written.
    bool areNewDatesWritable() const;
    // Writes the planned bytes, repairs PNG checksums, sets the file dates, reaches the disk;
    // then the item takes on its saved state.
    // In a journaled run the write is planned, and the item takes on its saved state when the
    // run commits it.
    bool writeAndFinish(PlannedSave plan);
    // The write itself, journaled or at once. `after`: the modification date the file takes,
    // none to leave the one the writes give it. A rating write keeps the file's date, and the
    // item takes on only what the plan says.
    enum class WriteKind { Dates, Rating };
    bool writePlanned(PlannedSave plan, std::optional<FileTime> after, WriteKind kind);
    bool finishPlanned(WriteKind kind, bool written, bool dateSet,
                       const std::vector<std::function<void()>> &whenSaved, bool damagedTags);
    bool finishWrite(bool written, bool dateSet, const std::vector<std::function<void()>> &whenSaved,
                     bool damagedTags);
    // The save error an item gets when its save fails: what was due.
    quint64 saveErrorTypeIfFailed() const;
    bool saveDependentFirst(int onlySaveFilesOfType);
    bool visitDependent(bool saving, bool success);
    bool invalidPicErrorID(int savingId, int checkingId, bool saving);
    void storeFileAttributes();
    void takeSavedState();

    MySinglePic &m_pic;
    SaveEnvironment &m_env;
    // The user declined added tags: the file's modification date alone carries the new date.
    bool m_keepsFileDateOnly = false;
};

} // namespace orv
