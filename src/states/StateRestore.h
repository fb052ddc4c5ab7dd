#pragma once

#include "states/AdditionalData.h"
#include "states/SavedFolders.h"

#include <QStringList>

namespace orv {

class MySinglePic;

// What a restore found on the disk: the state's folders and files as they stand now. Nothing is
// written; a file that changed or went away is flagged on its item (fileUnchangedState 3 or 1),
// and its stored sizes, dates and bytes stay as the state kept them, so that a save still
// proves them against the file and refuses it.
struct RestoreReport
{
    QStringList movedFolders;   // "old path -> new path": found again by the folder token
    QStringList missingFolders; // disconnected: their items stay, in state 1
    QStringList missingFiles;
    QStringList changedFiles;
    QStringList foldersAlreadyOpen; // left out: the working set holds them already
    // The additional data (the tracks) could not be read: the folders restore alone.
    QString additionalDataProblem;
    // The state was kept under another system zone (or is too old for its view): dates read
    // without a zone of their own stand for other instants here.
    AdditionalData::ConversionType conversionType = AdditionalData::ConversionType::None;
    // Under another system zone: the items whose dates were read anew in this one.
    int itemsReadInThisZone = 0;

    bool isClean() const
    {
        return movedFolders.isEmpty() && missingFolders.isEmpty() && missingFiles.isEmpty() && changedFiles.isEmpty()
               && foldersAlreadyOpen.isEmpty() && additionalDataProblem.isEmpty();
    }
    // One line per finding, for a log or a message.
    QStringList lines() const;
};

// A strip under the main one, its items found among those restored.
struct RestoredStrip
{
    AdditionalData::SubStrip kept;
    QList<MySinglePic *> shelf;
    MySinglePic *current = nullptr;
    QList<MySinglePic *> selected;
};

// The view kept with a state, its places found among the folders and items restored.
struct RestoredView
{
    AdditionalData::ViewState kept;
    QList<MySingleFolder *> selectedFolders;
    MySinglePic *current = nullptr;
    QList<MySinglePic *> selected;
    QList<RestoredStrip> strips;
};

namespace StateRestore {

// Reads the state at statePath (a package or a folders file). A file that cannot be read as a
// state is kept aside, never deleted, and the problem names it.
struct Restored
{
    SavedFolders::ReadResult read;
    // Beside the folders, when the state has it; a damaged file is kept aside.
    AdditionalData::ReadResult additional;
    RestoreReport report;
    QString keptAsidePath;
    // The items' main thumbnails kept with the state, by the items' sessionUniqueId; none when
    // the state has no thumbnails file or it cannot be read.
    QList<std::pair<quint32, QByteArray>> thumbnails;
    QString thumbnailsProblem;
    // Set by whoever adopts the folders, from those it took.
    RestoredView view;
};
Restored fromFile(const QString &statePath);

// The kept view's places resolved: folders by their place in the state (null for one left
// out), items by the place in the source they had when the state was kept, which they keep
// until the working set orders them anew. A state too old for its selections selects nothing;
// its shelves still take their items.
RestoredView resolveView(const AdditionalData::ViewState &kept, AdditionalData::ConversionType conversion,
                         const QList<MySingleFolder *> &foldersInStateOrder);

// Resolves each folder by its token (path, device and inode) and checks each file's size and
// dates against what the state holds.
RestoreReport checkFolders(const std::vector<std::unique_ptr<MySingleFolder>> &folders);

// Points a folder that was not found at the directory the user chose (an external disk mounted
// elsewhere, a folder moved away): taken when it is the same directory by its identity, or when
// it holds every file of the folder by name; its files are then checked as at a restore and
// the findings added to report. Empty on success; otherwise why, and the folder stays as it was.
QString reconnect(MySingleFolder &folder, const QString &directory, RestoreReport &report);

} // namespace StateRestore

} // namespace orv
