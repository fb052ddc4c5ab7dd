#include "folders/MyDroppedFolders.h"

#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "folders/DateSequence.h"
#include "folders/FileGroups.h"
#include "folders/ImportFilter.h"
#include "folders/ImportQuestions.h"
#include "folders/MySingleFolder.h"

#include <QCborArray>
#include <QCollator>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMutexLocker>
#include <QThread>

#include <algorithm>

namespace orv {

namespace {

const QString photosLibraryMarker = QStringLiteral(".photoslibrary/");

int paletteSize(const Preferences &prefs)
{
    return int(prefs.archiveForKey(QStringLiteral("folderColors_7")).toArray().size());
}

QCollator standardCollator()
{
    QCollator collator;
    collator.setNumericMode(true);
    return collator;
}

bool isInPhotosLibrary(const QString &path)
{
    return (path + QLatin1Char('/')).contains(photosLibraryMarker);
}

} // namespace

// The empty-tag question comes from the scan thread; the one who answers lives on the main
// thread, so the scan waits there for the answer.
class OwnerThreadQuestions : public ImportQuestions
{
public:
    OwnerThreadQuestions(MyDroppedFolders &owner, MySingleFolder &folder) : m_owner(owner), m_folder(folder) {}

    ImportOptions emptyTagOptions(const MySingleFolder &folder) override
    {
        ImportOptions answer;
        m_owner.runOnOwnerThread([&] {
            answer = m_owner.m_questions.emptyTagOptions(folder);
            m_folder.isImportSheetDone = true;
        });
        return answer;
    }
    bool singleImportAlert(qsizetype count) override { return m_owner.m_questions.singleImportAlert(count); }
    std::optional<TemporaryImportOptions> temporaryImportOptions(const TemporaryImportOptions &preset) override
    {
        return m_owner.m_questions.temporaryImportOptions(preset);
    }
    bool singleImportRetry(qsizetype count) override { return m_owner.m_questions.singleImportRetry(count); }

private:
    MyDroppedFolders &m_owner;
    MySingleFolder &m_folder;
};

MyDroppedFolders::MyDroppedFolders(Preferences &prefs, ImportQuestions &questions, QObject *parent)
    : QObject(parent), m_prefs(prefs), m_questions(questions), m_colors(paletteSize(prefs))
{
    qRegisterMetaType<ImportProgress>();
}

MyDroppedFolders::~MyDroppedFolders()
{
    m_shuttingDown = true;
    {
        QMutexLocker locker(&m_analyseLock);
        m_dropQueue.clear();
        if (m_currentlyImportingFolder)
            m_currentlyImportingFolder->shouldStopImport = true;
    }
    // A scan thread may be waiting for this thread; serve it (the work is skipped) until it ends.
    for (QThread *thread : std::as_const(m_threads)) {
        while (!thread->wait(10))
            QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
        delete thread;
    }
}

MySingleFolder *MyDroppedFolders::folderForDirectory(const QString &path) const
{
    const QString clean = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    const std::optional<FileIdentity> identity = FileIdentity::of(clean);
    for (MySingleFolder *folder : m_droppedFolders) {
        if (folder->sfFolderPath == clean || (identity && folder->sfSecBookmark.identity() == *identity))
            return folder;
    }
    return nullptr;
}

ImportProgress MyDroppedFolders::importProgress() const
{
    QMutexLocker locker(&m_analyseLock);
    return m_progress;
}

void MyDroppedFolders::processDroppedFolders(const QStringList &paths, const HeldKeys &keys, bool addingToShelf)
{
    QList<DropEntry> entries;
    for (const QString &path : paths)
        if (std::optional<DropEntry> entry = DropEntry::pathAndBookmarkFromAccessable(path))
            entries.append(*entry);
    processFolders(entries, keys, addingToShelf);
}

void MyDroppedFolders::processFolders(QList<DropEntry> entries, const HeldKeys &keys, bool addingToShelf)
{
    if (entries.isEmpty())
        return;
    if (std::all_of(entries.cbegin(), entries.cend(), [](const DropEntry &e) { return e.isGpx; })) {
        if (m_droppedFolders.isEmpty()) {
            Q_EMIT dropRefused();
        } else {
            QStringList tracks;
            for (const DropEntry &entry : std::as_const(entries))
                tracks.append(entry.path);
            Q_EMIT tracksDropped(tracks);
        }
        return;
    }
    QStringList states;
    entries.removeIf([&states](const DropEntry &e) {
        if (e.isProject)
            states.append(e.path);
        return e.isProject;
    });
    if (!states.isEmpty())
        Q_EMIT statesDropped(states, entries.isEmpty());
    if (entries.isEmpty())
        return;

    ImportDefaults defaults = ImportDefaults::fromPreferences(m_prefs);
    const auto isSingleFile = [](const DropEntry &e) { return !e.bookmarkData && !e.isGpx; };
    const qsizetype singleFiles = std::count_if(entries.cbegin(), entries.cend(), isSingleFile);
    int partialsState = TemporaryImportOptions::SingleFilesAllowed;
    if (!defaults.isAdvanced && singleFiles > 0) {
        if (m_questions.singleImportAlert(singleFiles)) {
            m_prefs.setValueNotifying(QStringLiteral("isAdvanced"), QStringLiteral("1"));
            defaults.isAdvanced = true;
        } else if (std::none_of(entries.cbegin(), entries.cend(),
                                [](const DropEntry &e) { return e.bookmarkData.has_value(); })) {
            return;
        } else {
            partialsState = TemporaryImportOptions::SingleFilesRefused;
        }
    } else if (!defaults.isAdvanced) {
        partialsState = TemporaryImportOptions::NoSingleFiles;
    }

    if (!defaults.showsOptionsSheet(keys)) {
        processDroppedFolders(entries, nullptr, 0, defaults.keyStatesFor(keys, addingToShelf));
        return;
    }
    TemporaryImportOptions preset = defaults.sheetPreset(keys, addingToShelf);
    preset.tioHasCurrentImportPartialsState = partialsState;
    const std::optional<TemporaryImportOptions> answer = m_questions.temporaryImportOptions(preset);
    if (!answer)
        return;
    // The sheet edits these preferences in place, so they are there for the next drop.
    if (answer->prefFixDateDate)
        m_prefs.setDate(QStringLiteral("prefFixDateDate"), *answer->prefFixDateDate);
    m_prefs.setInteger(QStringLiteral("prefFixDateStepValue"), answer->prefFixDateStepValue);
    m_prefs.setInteger(QStringLiteral("prefFixDateStepperKind"), answer->prefFixDateStepperKind);
    m_prefs.setValue(QStringLiteral("tioFilterValues"), answer->tioFilterValues);
    m_prefs.setInteger(QStringLiteral("tioFilterType"), answer->tioFilterType);
    processDroppedFolders(entries, nullptr, 0, answer->keyStatesAtImport());
}

void MyDroppedFolders::processDroppedFolders(QList<DropEntry> entries, MySingleFolder *parent, qint64 depth,
                                             const KeyStatesAtImport &keyStates)
{
    const bool singleFilesAllowed = ImportDefaults::fromPreferences(m_prefs).isAdvanced;
    QList<DropEntry> folders;
    QStringList files;
    for (DropEntry &entry : entries) {
        if (!entry.bookmarkData) {
            if (entry.isGpx || singleFilesAllowed)
                files.append(entry.path);
            continue;
        }
        if (MySingleFolder *existing = folderForDirectory(entry.path)) {
            // A complete folder dropped again is already there; a partial one becomes whole.
            if (!existing->isAdvanced)
                continue;
            existing->isAdvancedOver = true;
            for (const QString &name : FolderScanner::namesIn(existing->sfFolderPath))
                files.append(QDir(existing->sfFolderPath).filePath(name));
            continue;
        }
        entry.keyStatesAtImport = keyStates;
        entry.displayName = QFileInfo(entry.path).fileName();
        if (parent) {
            entry.parent = parent;
            entry.depth = depth;
        }
        folders.append(entry);
    }

    const QCollator collator = standardCollator();
    std::sort(files.begin(), files.end(), collator);
    QList<DropEntry> partials;
    for (const QString &file : std::as_const(files)) {
        const QFileInfo info(file);
        const QString directory = QDir::cleanPath(info.absolutePath());
        auto same = std::find_if(partials.begin(), partials.end(),
                                 [&directory](const DropEntry &e) { return e.path == directory; });
        if (same == partials.end()) {
            DropEntry entry;
            entry.path = directory;
            entry.displayName = QFileInfo(directory).fileName();
            entry.keyStatesAtImport = keyStates;
            entry.oldFolder = folderForDirectory(directory);
            partials.append(entry);
            same = std::prev(partials.end());
        }
        same->images.append(info.fileName());
    }
    folders.append(partials);
    if (folders.isEmpty())
        return;
    std::stable_sort(folders.begin(), folders.end(), [&collator](const DropEntry &a, const DropEntry &b) {
        return collator.compare(a.displayName, b.displayName) < 0;
    });
    newFoldersDropped(folders);
}

void MyDroppedFolders::newFoldersDropped(const QList<DropEntry> &entries)
{
    const KeyStatesAtImport &keys = entries.first().keyStatesAtImport;
    const ImportDefaults defaults = ImportDefaults::fromPreferences(m_prefs);
    std::shared_ptr<DateSequence> sequence;
    if (keys.tioDateSequenceEnabled) {
        MySingleFolder *parent = entries.first().parent;
        sequence = parent && parent->picsDelayedAtImportDueToCombAction
                       ? parent->picsDelayedAtImportDueToCombAction
                       : std::make_shared<DateSequence>(keys.tioDateSequenceDate, keys.dateSequenceStepInSeconds());
    }

    QList<MySingleFolder *> topLevel, subfolders;
    QList<DropEntry> unreachable;
    qsizetype unreachableFiles = 0;
    bool libraryRefused = false;
    QStringList tracks;
    for (DropEntry entry : entries) {
        if (isInPhotosLibrary(entry.path)) {
            if (!libraryRefused)
                Q_EMIT photosLibraryRefused();
            libraryRefused = true;
            continue;
        }
        MySingleFolder *folder = entry.oldFolder;
        if (folder) {
            if (!folder->isAdvanced) {
                const QSet<QString> imported = folder->itemNames();
                entry.images.removeIf([&imported](const QString &name) { return imported.contains(name); });
                if (entry.images.isEmpty())
                    continue;
            }
            if (folder->tempFullMediaCountBeforeImport == 0)
                folder->tempFullMediaCountBeforeImport = folder->fullMediaCount() ? folder->fullMediaCount() : -1;
            folder->keyStatesAtImport = keys;
            if (sequence) {
                folder->picsDelayedAtImportDueToCombAction = sequence;
                sequence->addDelayer(folder);
            }
            folder->perImportImportOptions.append(defaults.importOptionsFor(keys));
            topLevel.append(folder);
        } else {
            if (!entry.images.isEmpty()) {
                const bool onlyTracks = std::all_of(entry.images.cbegin(), entry.images.cend(), [](const QString &n) {
                    return QFileInfo(n).suffix().compare(QLatin1String("gpx"), Qt::CaseInsensitive) == 0;
                });
                if (onlyTracks) {
                    for (const QString &name : std::as_const(entry.images))
                        tracks.append(QDir(entry.path).filePath(name));
                    continue;
                }
                entry.bookmarkData = FolderToken::forPath(entry.path);
                if (!entry.bookmarkData || !FolderToken::isAccessible(entry.path)) {
                    unreachableFiles += entry.images.size();
                    if (!entry.isErrorDone)
                        unreachable.append(entry);
                    continue;
                }
            }
            folder = makeFolder(entry, defaults, sequence);
            (entry.parent ? subfolders : topLevel).append(folder);
        }
        if (!entry.images.isEmpty())
            folder->addImagesToImport(entry.images, ImportFilter(keys.tioFilterValues, keys.tioFilterType));
    }
    if (!tracks.isEmpty())
        Q_EMIT tracksDropped(tracks);
    if (!topLevel.isEmpty() || !subfolders.isEmpty())
        queueFolders(topLevel, subfolders);
    if (unreachableFiles > 0 && m_questions.singleImportRetry(unreachableFiles)) {
        for (DropEntry &entry : unreachable)
            entry.isErrorDone = true;
        newFoldersDropped(unreachable);
    }
}

MySingleFolder *MyDroppedFolders::makeFolder(const DropEntry &entry, const ImportDefaults &defaults,
                                             const std::shared_ptr<DateSequence> &sequence)
{
    const KeyStatesAtImport &keys = entry.keyStatesAtImport;
    auto owned = std::make_unique<MySingleFolder>(entry.path, keys.isControlKeyDown);
    MySingleFolder *folder = owned.get();
    m_ownedFolders.push_back(std::move(owned));
    folder->folderSortGeneral = m_folderSortCounter++;
    folder->tempFullMediaCountBeforeImport = MySingleFolder::firstImportMarker;
    if (keys.tioAdaptedTZ)
        folder->setTZDefaultsSource(keys.tioAdaptedTZ->tioAdaptedValue, keys.tioAdaptedTZ->tioIsAltTargetMode);
    folder->keyStatesAtImport = keys;
    if (sequence) {
        folder->picsDelayedAtImportDueToCombAction = sequence;
        sequence->addDelayer(folder);
    }
    folder->colorIndex = m_colors.indexOfNextColor();
    folder->sfSecBookmark = *entry.bookmarkData;
    folder->modifyImportBecauseOfCommand = keys.importKind();
    folder->importDepth = keys.isLKeyDown ? -1 : entry.depth;
    folder->importAncestors = entry.ancestors;
    folder->perImportImportOptions.append(defaults.importOptionsFor(keys));
    if (!entry.parent) {
        m_droppedFolders.append(folder);
        Q_EMIT folderAdded(folder);
    }
    return folder;
}

void MyDroppedFolders::queueFolders(const QList<MySingleFolder *> &topLevel, const QList<MySingleFolder *> &subfolders)
{
    bool startThread = false;
    {
        QMutexLocker locker(&m_analyseLock);
        for (MySingleFolder *folder : topLevel) {
            if (folder->hasImagesToImport())
                folder->isAdvanced = true;
            m_dropQueue.append(folder);
        }
        m_dropQueue.append(subfolders);
        m_progress.foldersLeft = int(m_dropQueue.size()) + (m_currentlyImportingFolder ? 1 : 0);
        if (!m_analyseThreadIsRunning) {
            m_analyseThreadIsRunning = true;
            startThread = true;
        }
    }
    if (!m_isImportInProgress) {
        m_isImportInProgress = true;
        Q_EMIT importStarted();
    }
    if (startThread) {
        QThread *thread = QThread::create([this] { startAnalyseThread(); });
        connect(thread, &QThread::finished, this, &MyDroppedFolders::importThreadFinished);
        m_threads.append(thread);
        thread->start();
    } else {
        Q_EMIT importProgressChanged(importProgress());
    }
}

void MyDroppedFolders::startAnalyseThread()
{
    continueAnalyseThread();
}

void MyDroppedFolders::continueAnalyseThread()
{
    for (;;) {
        MySingleFolder *folder = nullptr;
        {
            QMutexLocker locker(&m_analyseLock);
            if (m_dropQueue.isEmpty()) {
                m_analyseThreadIsRunning = false;
                m_currentlyImportingFolder = nullptr;
                m_progress = ImportProgress();
                break;
            }
            folder = m_dropQueue.takeFirst();
            m_currentlyImportingFolder = folder;
            folder->shouldStopImport = false;
            m_progress = ImportProgress{int(m_dropQueue.size()) + 1, folder->modifyImportBecauseOfCommand == 0,
                                        folder->sfFolder, 0, 0};
        }
        Q_EMIT importProgressChanged(importProgress());

        const ImportDefaults defaults = ImportDefaults::fromPreferences(m_prefs);
        OwnerThreadQuestions questions(*this, *folder);
        // The folder's extent belongs to the main thread, where a drop may change it while
        // this scan runs; the scan works on what it was when it began.
        FolderScanner::ImportScope scope;
        runOnOwnerThread([folder, &scope, &defaults] {
            scope = FolderScanner::scopeFor(*folder, defaults);
            folder->isAdvancedOver = false;
        });
        FolderScanner scanner(*folder, questions, defaults, std::move(scope));
        FolderScanner::Result result = scanner.updatePicData(
            [this, folder](qint64 done, qint64 total) { reportProgress(*folder, done, total); });
        runOnOwnerThread([this, folder, &result] { importCompletedWithSubfolders(folder, result); });

        QMutexLocker locker(&m_analyseLock);
        m_currentlyImportingFolder = nullptr;
    }
    Q_EMIT importProgressChanged(importProgress());
}

void MyDroppedFolders::reportProgress(MySingleFolder &folder, qint64 done, qint64 total)
{
    {
        QMutexLocker locker(&m_analyseLock);
        if (m_currentlyImportingFolder != &folder)
            return;
        m_progress.stepsDone = done;
        m_progress.stepsTotal = total;
    }
    Q_EMIT importProgressChanged(importProgress());
}

void MyDroppedFolders::runOnOwnerThread(const std::function<void()> &work)
{
    QMetaObject::invokeMethod(
        this,
        [this, &work] {
            if (!m_shuttingDown)
                work();
        },
        Qt::BlockingQueuedConnection);
}

void MyDroppedFolders::importCompletedWithSubfolders(MySingleFolder *folder, FolderScanner::Result &result)
{
    if (result.wasStopped) {
        discardStoppedImport(folder);
        return;
    }
    FolderScanner::takeResult(*folder, result);
    const qint64 steps = importProgress().stepsTotal;
    if (steps > 0)
        reportProgress(*folder, steps, steps);
    if (!result.subfolders.isEmpty()) {
        folder->importDepth = std::max<qint64>(folder->importDepth, 0);
        queueSubfolders(*folder, result.subfolders);
    }
    folder->importDepth = 0;

    QList<MySinglePic *> scanned;
    for (const auto &pic : result.pics)
        scanned.append(pic.get());
    FileGroups(*folder, scanned).formAfterScan();
    const std::shared_ptr<DateSequence> sequence = folder->picsDelayedAtImportDueToCombAction;
    for (auto &pic : result.pics) {
        if (pic->bundleMasterImage)
            folder->adoptPic(std::move(pic), false);
        else if (sequence)
            sequence->hold(std::move(pic));
        else
            folder->adoptPic(std::move(pic));
    }
    folder->updateFolderValuesOnPicMove();
    if (!sequence) {
        importCompletedSave(*folder);
    } else if (sequence->removeDelayer()) {
        finishDelayedImport(sequence);
    }

    const qint64 before = folder->tempFullMediaCountBeforeImport;
    if (before == MySingleFolder::firstImportMarker || (before != 0 && std::max<qint64>(before, 0) != folder->fullMediaCount()))
        Q_EMIT expertRelevantChangeWasMade();
    folder->tempFullMediaCountBeforeImport = 0;
}

void MyDroppedFolders::queueSubfolders(MySingleFolder &parent, const QList<FolderScanner::Subfolder> &subfolders)
{
    QList<FileIdentity> ancestors = parent.importAncestors;
    ancestors.append(parent.sfSecBookmark.identity());
    QList<DropEntry> entries;
    for (const FolderScanner::Subfolder &subfolder : subfolders) {
        DropEntry entry;
        entry.path = subfolder.path;
        entry.bookmarkData = subfolder.token;
        entry.ancestors = ancestors;
        entries.append(entry);
    }
    const qsizetype before = m_ownedFolders.size();
    processDroppedFolders(entries, &parent, parent.importDepth + 1, parent.keyStatesAtImport);
    // The new subfolders stand right after their parent in the list, in their name order.
    qsizetype at = m_droppedFolders.indexOf(&parent) + 1;
    for (qsizetype i = before; i < qsizetype(m_ownedFolders.size()); ++i) {
        MySingleFolder *subfolder = m_ownedFolders[size_t(i)].get();
        m_droppedFolders.insert(at++, subfolder);
        Q_EMIT folderAdded(subfolder);
    }
}

void MyDroppedFolders::importCompletedSave(MySingleFolder &folder)
{
    folder.sfUpdatePicsFromAndTill();
    Q_EMIT folderImported(&folder);
}

void MyDroppedFolders::finishDelayedImport(const std::shared_ptr<DateSequence> &sequence)
{
    const QList<MySingleFolder *> switched = sequence->finish();
    for (MySingleFolder *folder : sequence->folders()) {
        folder->picsDelayedAtImportDueToCombAction.reset();
        folder->updateFolderValuesOnPicMove();
        if (switched.contains(folder))
            Q_EMIT folderEditModeChanged(folder);
        importCompletedSave(*folder);
    }
}

void MyDroppedFolders::discardStoppedImport(MySingleFolder *folder)
{
    folder->importErrors.clear();
    if (folder->sfPics < 0) {
        removeFolder(folder);
        return;
    }
    folder->tempFullMediaCountBeforeImport = 0;
    leaveDateSequence(*folder, false);
}

void MyDroppedFolders::leaveDateSequence(MySingleFolder &folder, bool beforeScan)
{
    const std::shared_ptr<DateSequence> sequence = folder.picsDelayedAtImportDueToCombAction;
    if (!sequence)
        return;
    folder.picsDelayedAtImportDueToCombAction.reset();
    const bool wasLast = beforeScan ? sequence->forget(&folder) : sequence->removeDelayer();
    if (wasLast)
        finishDelayedImport(sequence);
}

void MyDroppedFolders::adoptRestoredFolders(std::vector<std::unique_ptr<MySingleFolder>> folders)
{
    for (std::unique_ptr<MySingleFolder> &owned : folders) {
        MySingleFolder *folder = owned.get();
        folder->folderSortGeneral = m_folderSortCounter++;
        folder->colorIndex = m_colors.indexOfNextColor();
        m_ownedFolders.push_back(std::move(owned));
        m_droppedFolders.append(folder);
        Q_EMIT folderAdded(folder);
        Q_EMIT folderImported(folder);
    }
}

void MyDroppedFolders::removeFolder(MySingleFolder *folder)
{
    releaseFolder(folder);
}

std::unique_ptr<MySingleFolder> MyDroppedFolders::releaseFolder(MySingleFolder *folder)
{
    const auto owns = [folder](const auto &each) { return each.get() == folder; };
    if (std::ranges::none_of(m_ownedFolders, owns))
        return nullptr;
    leaveDateSequence(*folder, true);
    m_droppedFolders.removeOne(folder);
    m_colors.recycleColorIndexFromFolder(*folder, m_droppedFolders);
    Q_EMIT folderRemoved(folder);
    // Looked up again: the signal's receivers may have changed the list.
    const auto owned = std::ranges::find_if(m_ownedFolders, owns);
    std::unique_ptr<MySingleFolder> released = std::move(*owned);
    m_ownedFolders.erase(owned);
    return released;
}

bool MyDroppedFolders::removeFolders(const QList<MySingleFolder *> &folders)
{
    if (m_isImportInProgress)
        return false;
    for (MySingleFolder *folder : folders) {
        if (m_droppedFolders.contains(folder))
            removeFolder(folder);
    }
    return true;
}

void MyDroppedFolders::cancelImports()
{
    QList<MySingleFolder *> taken;
    MySingleFolder *current = nullptr;
    {
        QMutexLocker locker(&m_analyseLock);
        taken.swap(m_dropQueue);
        current = m_currentlyImportingFolder;
        if (current && m_progress.canAbort)
            current->shouldStopImport = true;
        m_progress.foldersLeft = current ? 1 : 0;
    }
    for (MySingleFolder *folder : std::as_const(taken)) {
        folder->clearImagesToImport();
        folder->perImportImportOptions.clear();
        if (folder->sfPics < 0) {
            removeFolder(folder);
        } else {
            folder->tempFullMediaCountBeforeImport = 0;
            leaveDateSequence(*folder, true);
        }
    }
}

void MyDroppedFolders::importThreadFinished()
{
    auto *thread = qobject_cast<QThread *>(sender());
    m_threads.removeOne(thread);
    thread->deleteLater();
    QMutexLocker locker(&m_analyseLock);
    const bool running = m_analyseThreadIsRunning;
    locker.unlock();
    if (!running && m_isImportInProgress) {
        m_isImportInProgress = false;
        Q_EMIT importEnded();
    }
}

} // namespace orv
