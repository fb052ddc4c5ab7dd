#pragma once

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <QTimer>

namespace orv {

// Notices files changed behind our back while they are imported. The folders' directories are
// watched, never their files: inotify's watches are few, and a directory's watch hears of every
// entry made, removed, renamed or given new attributes in it. A change other than our own writes
// (bracketed by willModifyFolder and didModifyFolder) queues its folder; a second after the last
// event of a burst, its items are proven one at a time, by the proof a save makes, on a thread
// of its own at the system's idle priority. The results reach the items on the main thread:
// fileUnchangedState, which the save refuses and the list shows. A folder that cannot be
// reached any more (an unplugged card, a removed folder) has every item missing; a renamed one is
// found again by its token when the next change in it is heard (a directory's watch hears
// nothing of its own rename).
//
// Lives on the main thread, like the folders it watches.
class FolderChangeVerifier : public QObject
{
    Q_OBJECT
public:
    explicit FolderChangeVerifier(QObject *parent = nullptr);
    ~FolderChangeVerifier() override;

    void watchFolder(MySingleFolder &folder);
    void unwatchFolder(MySingleFolder &folder);

    // Our own writes: a folder between the two is not checked, and after them its items count as
    // proven at that moment.
    void willModifyFolder(MySingleFolder &folder);
    void didModifyFolder(MySingleFolder &folder);
    // Imports and saves hold the queue; it goes on where it stood.
    void stopVerification();
    void resumeVerification();

    // The folder's directory changed. False when the change is ours or came within a second of
    // the last one noticed; otherwise the folder waits for its check.
    bool didChangeContentAtFolder(MySingleFolder &folder);
    // No folder waits and no item is being proven.
    bool isIdle() const;

    // Seconds from a burst's last event to the check.
    static constexpr int quietMilliseconds = 1000;

Q_SIGNALS:
    // A pass over a folder ended and these items' states changed.
    void fileStatesChanged(orv::MySingleFolder *folder, const QList<orv::MySinglePic *> &pics);
    // The system's limit of directory watches is reached: this folder's changes are found only by
    // the save's own proof.
    void watchLimitReached(const QString &path);

private:
    void directoryChanged(const QString &path);
    void verifyNextFolder();
    // Opens the folder's access through its token, following a rename; false when it is gone or
    // refused (an unplugged card), which also marks the folder disconnected.
    bool reachFolder(MySingleFolder &folder);
    // Every item of an unreachable folder counts as missing, which the save refuses.
    void markMissing(MySingleFolder &folder);
    void verifyNextPic();
    void verifiedPicWithState(MySinglePic *pic, qint64 state, qint64 dependentState);

    QFileSystemWatcher m_watcher;
    QHash<QString, MySingleFolder *> m_folderByPath;
    QSet<MySingleFolder *> m_foldersWithUncheckedContentChanges;
    QSet<MySingleFolder *> m_foldersExemptFromChangesChecking;
    MySingleFolder *m_verifyingFolder = nullptr;
    QList<MySinglePic *> m_verifiyingPics;
    QList<MySinglePic *> m_verifiedPicsWithChanges;
    bool m_picInQueue = false;
    int m_stops = 0;
    QTimer m_folderVerificationTimer;
    QThreadPool m_fileVerificationQueue;
};

} // namespace orv
