#include "folders/FolderChangeVerifier.h"

#include "core/MySinglePic.h"
#include "core/PicSaver.h"
#include "core/SaveSettings.h"
#include "folders/MySingleFolder.h"

#include <QPointer>
#include <QThread>

namespace orv {

namespace {

// The state of one file now, or nothing when it is no item's any more.
qint64 provenState(MySinglePic *pic)
{
    return pic ? PicSaver::updatedUnchangedFileState(*pic) : -1;
}

} // namespace

FolderChangeVerifier::FolderChangeVerifier(QObject *parent) : QObject(parent)
{
    m_folderVerificationTimer.setSingleShot(true);
    m_folderVerificationTimer.setInterval(quietMilliseconds);
    connect(&m_folderVerificationTimer, &QTimer::timeout, this, &FolderChangeVerifier::verifyNextFolder);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FolderChangeVerifier::directoryChanged);
    // One item at a time, and never in the way of the user's work.
    m_fileVerificationQueue.setMaxThreadCount(1);
    m_fileVerificationQueue.setThreadPriority(QThread::IdlePriority);
}

FolderChangeVerifier::~FolderChangeVerifier()
{
    m_fileVerificationQueue.waitForDone();
}

void FolderChangeVerifier::watchFolder(MySingleFolder &folder)
{
    if (m_folderByPath.value(folder.sfFolderPath) == &folder)
        return;
    m_folderByPath.insert(folder.sfFolderPath, &folder);
    if (!m_watcher.addPath(folder.sfFolderPath) && !m_watcher.directories().contains(folder.sfFolderPath))
        Q_EMIT watchLimitReached(folder.sfFolderPath);
}

void FolderChangeVerifier::unwatchFolder(MySingleFolder &folder)
{
    if (m_folderByPath.value(folder.sfFolderPath) == &folder) {
        m_folderByPath.remove(folder.sfFolderPath);
        m_watcher.removePath(folder.sfFolderPath);
    }
    m_foldersWithUncheckedContentChanges.remove(&folder);
    m_foldersExemptFromChangesChecking.remove(&folder);
    if (m_verifyingFolder == &folder) {
        // The item being proven must outlive its proof.
        m_fileVerificationQueue.waitForDone();
        m_verifyingFolder = nullptr;
        m_verifiyingPics.clear();
        m_verifiedPicsWithChanges.clear();
    }
}

void FolderChangeVerifier::willModifyFolder(MySingleFolder &folder)
{
    m_foldersExemptFromChangesChecking.insert(&folder);
}

void FolderChangeVerifier::didModifyFolder(MySingleFolder &folder)
{
    m_foldersExemptFromChangesChecking.remove(&folder);
    const Instant now = currentInstant();
    folder.lastLocalChange = now;
    for (MySinglePic *pic : std::as_const(folder.sfPicDetails_fullArray)) {
        pic->lastCheckedAt = now;
        if (pic->bundleDependentImage)
            pic->bundleDependentImage->lastCheckedAt = now;
    }
}

void FolderChangeVerifier::stopVerification()
{
    ++m_stops;
    // A save or an import reads the items next: the proof under way ends first.
    m_fileVerificationQueue.waitForDone();
}

void FolderChangeVerifier::resumeVerification()
{
    if (m_stops > 0 && --m_stops == 0)
        verifyNextPic();
}

bool FolderChangeVerifier::isIdle() const
{
    return m_foldersWithUncheckedContentChanges.isEmpty() && !m_verifyingFolder && !m_picInQueue;
}

void FolderChangeVerifier::directoryChanged(const QString &path)
{
    if (MySingleFolder *folder = m_folderByPath.value(path))
        didChangeContentAtFolder(*folder);
}

bool FolderChangeVerifier::didChangeContentAtFolder(MySingleFolder &folder)
{
    const Instant now = currentInstant();
    if (m_foldersExemptFromChangesChecking.contains(&folder)
        || (folder.lastLocalChange && now.secondsSinceEpoch() - folder.lastLocalChange->secondsSinceEpoch() < 1.0))
        return false;
    folder.lastLocalChange = now;
    m_foldersWithUncheckedContentChanges.insert(&folder);
    // A burst of events costs one check.
    m_folderVerificationTimer.start();
    return true;
}

void FolderChangeVerifier::verifyNextFolder()
{
    if (m_verifyingFolder)
        return; // the pass under way takes the next folder when it ends
    while (!m_foldersWithUncheckedContentChanges.isEmpty()) {
        MySingleFolder *folder = *m_foldersWithUncheckedContentChanges.cbegin();
        m_foldersWithUncheckedContentChanges.remove(folder);
        if (folder->sfPicDetails_fullArray.isEmpty())
            continue;
        if (!reachFolder(*folder)) {
            markMissing(*folder);
            continue;
        }
        m_verifyingFolder = folder;
        m_verifiyingPics = folder->sfPicDetails_fullArray;
        m_verifiedPicsWithChanges.clear();
        verifyNextPic();
        return;
    }
}

bool FolderChangeVerifier::reachFolder(MySingleFolder &folder)
{
    const QString watchedPath = folder.sfFolderPath;
    const QString path = folder.unlockedSecUrl();
    if (path.isEmpty() || path == watchedPath)
        return !path.isEmpty();
    // Renamed or moved: its token found it, and the watch follows it to its new path.
    m_folderByPath.remove(watchedPath);
    m_watcher.removePath(watchedPath);
    watchFolder(folder);
    return true;
}

void FolderChangeVerifier::markMissing(MySingleFolder &folder)
{
    QList<MySinglePic *> changed;
    for (MySinglePic *pic : std::as_const(folder.sfPicDetails_fullArray)) {
        bool wasThere = pic->fileUnchangedState != 1;
        pic->fileUnchangedState = 1;
        pic->lastCheckedAt.reset();
        if (MySinglePic *dependent = pic->bundleDependentImage) {
            wasThere = wasThere || dependent->fileUnchangedState != 1;
            dependent->fileUnchangedState = 1;
            dependent->lastCheckedAt.reset();
        }
        if (wasThere)
            changed.append(pic);
    }
    if (!changed.isEmpty())
        Q_EMIT fileStatesChanged(&folder, changed);
}

void FolderChangeVerifier::verifyNextPic()
{
    if (m_stops > 0 || m_picInQueue || m_verifiyingPics.isEmpty())
        return;
    // Paced by its own results: never more than one item in the queue.
    m_picInQueue = true;
    MySinglePic *pic = m_verifiyingPics.first();
    const QPointer<FolderChangeVerifier> self(this);
    m_fileVerificationQueue.start([self, pic] {
        const qint64 state = provenState(pic);
        const qint64 dependentState = provenState(pic->bundleDependentImage);
        QMetaObject::invokeMethod(self, [self, pic, state, dependentState] {
            if (self)
                self->verifiedPicWithState(pic, state, dependentState);
        }, Qt::QueuedConnection);
    });
}

void FolderChangeVerifier::verifiedPicWithState(MySinglePic *pic, qint64 state, qint64 dependentState)
{
    m_picInQueue = false;
    if (!m_verifiyingPics.contains(pic))
        return verifyNextPic(); // its folder left while it was proven
    if (m_stops > 0) {
        // Proven before a save or an import that may change it: proven again when they end.
        pic->lastCheckedAt.reset();
        if (pic->bundleDependentImage)
            pic->bundleDependentImage->lastCheckedAt.reset();
        return;
    }
    m_verifiyingPics.removeOne(pic);
    const bool changed = state != pic->fileUnchangedState
                         || (pic->bundleDependentImage && dependentState != pic->bundleDependentImage->fileUnchangedState);
    pic->fileUnchangedState = qint8(state);
    if (pic->bundleDependentImage)
        pic->bundleDependentImage->fileUnchangedState = qint8(dependentState);
    if (changed)
        m_verifiedPicsWithChanges.append(pic);
    if (!m_verifiyingPics.isEmpty())
        return verifyNextPic();

    MySingleFolder *folder = std::exchange(m_verifyingFolder, nullptr);
    const QList<MySinglePic *> changedPics = std::exchange(m_verifiedPicsWithChanges, {});
    if (!changedPics.isEmpty())
        Q_EMIT fileStatesChanged(folder, changedPics);
    verifyNextFolder();
}

} // namespace orv
