#pragma once

#include "folders/DropEntry.h"
#include "folders/FolderColors.h"
#include "folders/FolderScanner.h"
#include "folders/ImportKeyStates.h"

#include <QList>
#include <QMetaType>
#include <QMutex>
#include <QObject>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class QThread;

namespace orv {

class DateSequence;
class ImportQuestions;
class MySingleFolder;
class Preferences;

// Where the running import stands, for the progress display.
struct ImportProgress
{
    int foldersLeft = 0;     // queued plus the one being scanned
    bool canAbort = false;   // canCurrentlyImportingFolderBeAborted: express imports cannot be
    QString folderName;      // the folder being scanned
    qint64 stepsDone = 0;    // of the folder being scanned
    qint64 stepsTotal = 0;   // 2 x names + 1
};

// The list of imported folders and the import driver: it takes what was dropped or opened,
// decides which folders and files that is, applies the keys held and the options, and scans the
// folders one after the other on one background thread, the bytes of each folder's files on all
// cores. Everything public runs on the thread the object lives on (the main thread); results are
// published there, through the signals.
class MyDroppedFolders : public QObject
{
    Q_OBJECT
public:
    MyDroppedFolders(Preferences &prefs, ImportQuestions &questions, QObject *parent = nullptr);
    ~MyDroppedFolders() override;

    // A drop or an open: files and folders, with the keys held at that moment. Asks the
    // single-file alert and the options sheet where the preferences call for them.
    void processDroppedFolders(const QStringList &paths, const HeldKeys &keys, bool addingToShelf = false);
    // The same without questions: the key states say how to import (a script, a sheet already
    // answered, or the subfolders of a parent, which take its key states).
    void processDroppedFolders(QList<DropEntry> entries, MySingleFolder *parent, qint64 depth,
                               const KeyStatesAtImport &keyStates);
    // Stops the scan between two rounds of files and drops the queue; folders that never
    // finished leave the list (folderRemoved).
    void cancelImports();

    // The folders of a restored state join the list after those there, each announced as added
    // and imported; they take the next colours.
    void adoptRestoredFolders(std::vector<std::unique_ptr<MySingleFolder>> folders);
    // The folder leaves the list (folderRemoved) into the caller's hands, as undoing a restore
    // takes its folders back; nothing when the list does not own it.
    std::unique_ptr<MySingleFolder> releaseFolder(MySingleFolder *folder);

    // Takes imported folders out of the list (folderRemoved each); their files stay as they are.
    // Refused while an import runs, as the scan may hold them.
    bool removeFolders(const QList<MySingleFolder *> &folders);

    const QList<MySingleFolder *> &droppedFolders() const { return m_droppedFolders; }
    // The imported folder of a directory, by its path or by its identity.
    MySingleFolder *folderForDirectory(const QString &path) const;
    bool isImportInProgress() const { return m_isImportInProgress; }
    ImportProgress importProgress() const;

Q_SIGNALS:
    void importStarted();
    // The queue is empty and the scan thread has stopped.
    void importEnded();
    // A new folder joined droppedFolders (with sfPics -1 until its scan is published).
    void folderAdded(orv::MySingleFolder *folder);
    // A folder whose import was cancelled before it finished; deleted when the slots return.
    void folderRemoved(orv::MySingleFolder *folder);
    // A folder's import is published: its items are in sfPicDetails_fullArray, its counts are
    // fresh, and what went wrong is in folder->importErrors (one message per kind).
    void folderImported(orv::MySingleFolder *folder);
    // Emitted from the scan thread; connect with the default (queued) connection.
    void importProgressChanged(const orv::ImportProgress &progress);
    // A date sequence moved the folder to separate mode.
    void folderEditModeChanged(orv::MySingleFolder *folder);
    void expertRelevantChangeWasMade();
    // GPX files dropped on their own, for the tracks; a drop of only tracks before any folder
    // is refused instead.
    void tracksDropped(const QStringList &paths);
    // Saved states dropped; with restoreRightAway nothing else was dropped.
    void statesDropped(const QStringList &paths, bool restoreRightAway);
    // The drop was refused as a whole (the window beeps).
    void dropRefused();
    // Files inside a photo library package are never imported; once per drop.
    void photosLibraryRefused();

private:
    void processFolders(QList<DropEntry> entries, const HeldKeys &keys, bool addingToShelf);
    void newFoldersDropped(const QList<DropEntry> &entries);
    MySingleFolder *makeFolder(const DropEntry &entry, const ImportDefaults &defaults,
                               const std::shared_ptr<DateSequence> &sequence);
    void queueFolders(const QList<MySingleFolder *> &topLevel, const QList<MySingleFolder *> &subfolders);

    // The scan thread.
    void startAnalyseThread();
    void continueAnalyseThread();
    void reportProgress(MySingleFolder &folder, qint64 done, qint64 total);
    // Runs work on this object's thread while the scan thread waits.
    void runOnOwnerThread(const std::function<void()> &work);

    // Publication, on the main thread.
    void importCompletedWithSubfolders(MySingleFolder *folder, FolderScanner::Result &result);
    void queueSubfolders(MySingleFolder &parent, const QList<FolderScanner::Subfolder> &subfolders);
    void importCompletedSave(MySingleFolder &folder);
    void finishDelayedImport(const std::shared_ptr<DateSequence> &sequence);
    void discardStoppedImport(MySingleFolder *folder);
    void removeFolder(MySingleFolder *folder);
    void leaveDateSequence(MySingleFolder &folder, bool beforeScan);
    void importThreadFinished();

    Preferences &m_prefs;
    ImportQuestions &m_questions;
    FolderColors m_colors;
    std::vector<std::unique_ptr<MySingleFolder>> m_ownedFolders;
    QList<MySingleFolder *> m_droppedFolders;
    qint64 m_folderSortCounter = 0;
    bool m_isImportInProgress = false;
    std::atomic<bool> m_shuttingDown{false};
    QList<QThread *> m_threads;

    // Guards the queue, the running flag, the folder being scanned and the progress.
    mutable QMutex m_analyseLock;
    QList<MySingleFolder *> m_dropQueue;
    bool m_analyseThreadIsRunning = false;
    MySingleFolder *m_currentlyImportingFolder = nullptr;
    ImportProgress m_progress;

    friend class OwnerThreadQuestions;
};

} // namespace orv

Q_DECLARE_METATYPE(orv::ImportProgress)
