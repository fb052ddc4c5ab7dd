#include "folders/SaveRun.h"

#include "core/LogController.h"
#include "core/MySinglePic.h"
#include "core/NewDateCalculator.h"
#include "core/PicSaver.h"
#include "core/StampEdits.h"
#include "core/StoredBytes.h"
#include "folders/MySingleFolder.h"
#include "formats/FileReader.h"
#include "formats/InPlaceWriter.h"
#include "formats/MySingleFolderDataReader.h"
#include "formats/PngLocator.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QThread>
#include <QtConcurrent>
#include <fcntl.h>
#include <sys/stat.h>

namespace orv {

namespace {

// Saves wait on the disk far more than they compute.
constexpr int savingThreads = 16;

// The bar moves by a tenth of the items, at most 25 at a time, and at every item of a short run.
int progressStep(int count)
{
    return count < 10 ? 1 : std::min(count / 10, 25);
}

QList<MySinglePic *> withDependent(MySinglePic *pic)
{
    QList<MySinglePic *> group{pic};
    if (pic->bundleDependentImage)
        group.append(pic->bundleDependentImage);
    return group;
}

bool hasXmpSidecar(MySinglePic *pic)
{
    const QList<MySinglePic *> group = withDependent(pic);
    return std::any_of(group.cbegin(), group.cend(),
                       [](const MySinglePic *member) { return !member->spXMPPath().isEmpty(); });
}

// The file manager notices a folder whose own date moved; in-place writes leave it alone.
void touchFolder(const QString &path)
{
    ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), nullptr, 0);
}

void addAll(PreSaveErrors &errors, const QSet<QString> &keys, MySinglePic *pic)
{
    for (const QString &key : keys)
        errors[key].append(pic);
}

} // namespace

SaveRun::SaveRun(QList<MySingleFolder *> folders, SaveSettings settings, SaveQuestions &questions,
                 LogController *log, FileWriteAccess *disk)
    : m_folders(std::move(folders)), m_settings(std::move(settings)), m_questions(questions),
      m_log(log), m_disk(disk ? *disk : FileWriteAccess::disk()),
      m_journal(m_settings.journalPath.isEmpty()
                    ? nullptr
                    : std::make_unique<SaveJournal>(m_settings.journalPath))
{
    m_savePool.setMaxThreadCount(savingThreads);
    m_exiftool.keepOriginalsIn(m_journal.get());
}

SaveRun::~SaveRun() = default;

bool SaveRun::isDue(const MySinglePic &pic) const
{
    return m_settings.options.isSavingPhotosWithoutDateChangesEnabled || pic.isUnsaved() ||
           hasRatingToWrite(pic);
}

bool SaveRun::hasRatingToWrite(const MySinglePic &pic) const
{
    return m_settings.writeRatingsToXMPOnSave && pic.groupXmpRatingToWrite();
}

QList<MySingleFolder *> SaveRun::foldersToSave() const
{
    QList<MySingleFolder *> chosen;
    for (MySingleFolder *folder : m_folders) {
        const QList<MySinglePic *> &pics = folder->sfPicDetails_fullArray;
        const bool hasDueItem = std::any_of(pics.begin(), pics.end(),
                                            [this](const MySinglePic *p) { return isDue(*p); });
        if (!folder->isEXIFIgnored() && hasDueItem)
            chosen.append(folder);
    }
    return chosen;
}

void SaveRun::startProgress(int maximum)
{
    const QMutexLocker lock(&m_progressMutex);
    m_progress = 0;
    Q_EMIT progressMaximumChanged(maximum);
    Q_EMIT progressChanged(0);
}

void SaveRun::reportProgress(int done, int count, int step)
{
    if (done % step != 0 && done != count)
        return;
    // Saves finish out of order; the bar only moves forward.
    const QMutexLocker lock(&m_progressMutex);
    if (done <= m_progress)
        return;
    m_progress = done;
    Q_EMIT progressChanged(done);
}

int SaveRun::countDue(const QList<MySingleFolder *> &folders) const
{
    int count = 0;
    for (const MySingleFolder *folder : folders)
        count += int(std::count_if(folder->sfPicDetails_fullArray.begin(),
                                   folder->sfPicDetails_fullArray.end(),
                                   [this](const MySinglePic *p) { return isDue(*p); }));
    return count;
}

PreSaveErrors SaveRun::preProcess()
{
    Q_EMIT statusChanged(QStringLiteral("workPanelPreSave"));
    const QList<MySingleFolder *> folders = foldersToSave();
    const int count = countDue(folders);
    startProgress(count);

    PreSaveErrors errors;
    NewDateContext calculation;
    calculation.preferences = m_settings.options;
    SaveCheckContext check;
    int done = 0;
    for (MySingleFolder *folder : folders) {
        // Every file is proven afresh.
        folder->lastLocalChange = currentInstant();
        for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
            if (!isDue(*pic))
                continue;
            reportProgress(++done, count, 100);
            for (MySinglePic *member : withDependent(pic))
                member->fileUnchangedState = PicSaver::updatedUnchangedFileState(*member);
            addAll(errors, checkFileUnchangedStateForSaveRenameErrors(*pic), pic);
            calculateNewDatesWithCachedPrefSettings(*pic, &m_settings.options, calculation);
            check.targetTimeZone = StampEdits::targetZoneFor(*pic, m_settings).value_or(TimeZone::systemZone());
            for (MySinglePic *member : withDependent(pic))
                addAll(errors, checkCalculatedValuesForSaveErrors(*member, check), member);
        }
    }
    return errors;
}

QList<MySinglePic *> SaveRun::dueItems() const
{
    QList<MySinglePic *> due;
    for (const MySingleFolder *folder : foldersToSave())
        for (MySinglePic *pic : folder->sfPicDetails_fullArray)
            if (isDue(*pic))
                due.append(pic);
    return due;
}

SaveOutcome SaveRun::run()
{
    SaveOutcome outcome;
    std::shared_ptr<JournalLock> lock;
    if (m_journal) {
        lock = JournalLock::take(m_settings.journalPath, true, [this] {
            Q_EMIT statusChanged(QStringLiteral("workPanelWaitingForOtherSave"));
        });
        outcome.journalProblem = m_journal->open();
    }
    // The journal is let go while the lock is still held: left to the run's deletion, an
    // unfinished one (a save cancelled at its summary) would be taken back after the window's
    // next run had begun its own under the same name.
    const auto letGoOfJournal = qScopeGuard([this] {
        m_exiftool.keepOriginalsIn(nullptr);
        m_journal.reset();
    });
    if (!outcome.journalProblem.isEmpty()) {
        if (m_log)
            m_log->updateLogOnDiskWithErrorLog(outcome.journalProblem);
        Q_EMIT finished(false);
        return outcome;
    }
    outcome.preSaveErrors = preProcess();
    if (!m_questions.confirmSave({outcome.preSaveErrors, dueItems(), &m_settings})) {
        outcome.cancelled = true;
        Q_EMIT finished(true);
        return outcome;
    }
    saveThread(outcome);
    m_xt.cleanup();
    if (m_journal)
        m_journal->endRun();
    writeErrorLog();
    Q_EMIT finished(false);
    return outcome;
}

QFuture<SaveOutcome> SaveRun::start()
{
    return QtConcurrent::run([this] { return run(); });
}

void SaveRun::saveThread(SaveOutcome &outcome)
{
    Q_EMIT statusChanged(QStringLiteral("workPanelSave"));
    // A change of the preference during the run reaches the next one.
    const bool syncsXmp = m_settings.syncXMPDataOnSave;
    const QList<MySingleFolder *> folders = foldersToSave();
    const int count = countDue(folders);
    startProgress(count);
    const int step = progressStep(count);

    SaveEnvironment environment{m_settings, m_errors, m_disk, m_exiftool, m_journal.get()};
    std::atomic<int> done = 0;
    bool anyXmpSidecar = false;
    for (MySingleFolder *folder : folders) {
        if (!outcome.journalProblem.isEmpty())
            return;
        folder->fixedDates = 0;
        folder->saveErrors = 0;
        struct Job
        {
            MySinglePic *pic;
            bool saved = false;
        };
        std::vector<Job> jobs;
        for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
            if (isDue(*pic))
                jobs.push_back({pic});
        }
        // A group is saved as one and touches nothing of another, and a save waits mostly on the
        // disk: many at once let the file system commit their syncs together.
        QtConcurrent::blockingMap(&m_savePool, jobs, [&](Job &job) {
            reportProgress(++done, count, step);
            MySinglePic &pic = *job.pic;
            MySinglePic *dependent = pic.bundleDependentImage;
            if (!dependent || m_settings.options.isSavingPhotosWithoutDateChangesEnabled ||
                pic.isThisUnsaved(false, false) || pic.hasSaveError() || hasRatingToWrite(pic))
                job.saved = PicSaver(pic, environment).validatePicWithSavingChanges(true);
            else
                job.saved = PicSaver(*dependent, environment)
                                .validatePicWithSavingChanges(true, PicSaver::DependentAlone);
            if (!syncsXmp && !hasXmpSidecar(&pic))
                pic.isInvalidDueToChangesAfterImport = false;
            else if (!pic.isInvalidDueToChangesAfterImport)
                pic.isVerifiedDuringSave = true;
        });
        commitPlanned(outcome);
        bool anySaved = false;
        for (const Job &job : jobs) {
            anyXmpSidecar = anyXmpSidecar || hasXmpSidecar(job.pic);
            for (MySinglePic *member : withDependent(job.pic)) {
                if (job.saved && !member->hasSaveError())
                    outcome.savedPics.insert(member);
            }
            anySaved = anySaved || job.saved;
        }
        if (anySaved)
            touchFolder(folder->sfFolderPath);
        runOnOwnerThread([this, folder] {
            clearDateValuesAfterSavingFolder(*folder);
            Q_EMIT folderSaved(folder);
        });
    }
    // A sidecar's dates follow every save, so that other programs read the group's new date;
    // the XMP twin inside a file only under the preference.
    if ((syncsXmp || anyXmpSidecar) && outcome.journalProblem.isEmpty())
        syncXMPDataThread(folders, outcome);
    // After the dates, so that a rating written in place finds the packet as they left it.
    if (m_settings.writeRatingsToXMPOnSave && outcome.journalProblem.isEmpty())
        writeRatingsThread(folders, outcome);
}

void SaveRun::writeRatingsThread(const QList<MySingleFolder *> &folders, SaveOutcome &outcome)
{
    SaveEnvironment environment{m_settings, m_errors, m_disk, m_exiftool, m_journal.get()};
    QList<MySinglePic *> rated;
    for (MySingleFolder *folder : folders) {
        for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
            for (MySinglePic *member : withDependent(pic)) {
                // Only a file the save just proved unchanged takes its rating.
                if (member->xmpRatingToWrite() && outcome.savedPics.contains(member)) {
                    PicSaver(*member, environment).saveRating();
                    rated.append(member);
                }
            }
        }
    }
    commitPlanned(outcome);
    // A write planned in the journal fails only at its commit: the errors tell.
    for (MySinglePic *pic : std::as_const(rated)) {
        if (!m_errors.errorIdsFor(*pic).isEmpty() || !m_errors.toolStepsFor(*pic).isEmpty())
            outcome.savedPics.remove(pic);
    }
}

bool SaveRun::commitPlanned(SaveOutcome &outcome)
{
    if (!m_journal || m_journal->commit(m_disk))
        return true;
    outcome.journalProblem = m_journal->problem();
    return false;
}

void SaveRun::runOnOwnerThread(const std::function<void()> &work)
{
    if (QThread::currentThread() == thread())
        work();
    else
        QMetaObject::invokeMethod(this, work, Qt::BlockingQueuedConnection);
}

void SaveRun::clearDateValuesAfterSavingFolder(MySingleFolder &folder)
{
    QList<MySinglePic *> failed;
    for (MySinglePic *pic : folder.sfPicDetails_fullArray) {
        if (pic->hasSaveErrorTime() ||
            (pic->bundleDependentImage && pic->bundleDependentImage->hasSaveErrorTime()))
            failed.append(pic);
    }
    if (folder.sfEditMode != MySingleFolder::EditTogether) {
        // Items whose time failed keep their own offset: the next save retries them.
        folder.clearSinglePicModeImages();
        return;
    }
    const double interval = folder.sfDateModificationsTimeInterval;
    const QString zero = QStringLiteral("0");
    folder.setDirection(QStringLiteral("+"), zero, zero, zero, zero);
    if (failed.isEmpty() || interval == 0.0)
        return;
    // The saved items show the same date as before; the failed ones keep the change pending.
    folder.sfEditMode = MySingleFolder::EditSeparately;
    for (MySinglePic *pic : failed) {
        folder.updateSinglePicModificationBy(*pic, interval);
        if (pic->bundleDependentImage)
            pic->bundleDependentImage->singlePicModification = pic->singlePicModification;
    }
}

void SaveRun::syncXMPDataThread(const QList<MySingleFolder *> &folders, SaveOutcome &outcome)
{
    Q_EMIT statusChanged(QStringLiteral("workPanelSyncXMP"));
    int count = 0;
    for (const MySingleFolder *folder : folders)
        count += int(folder->sfPicDetails_fullArray.size());
    startProgress(count);
    const int step = progressStep(count);
    int done = 0;
    const bool syncsXmp = m_settings.syncXMPDataOnSave;
    const auto shouldSync = [syncsXmp](const MySinglePic &pic) {
        return (syncsXmp || !pic.spXMPPath().isEmpty()) && pic.spType >= SpTypeExifOriginal &&
               pic.spType <= SpTypeEmptyTiffFixedDate &&
               !pic.isCreaXmp && !pic.isDigiXmp && !pic.isModiXmp && !pic.hasSaveError() &&
               !pic.isInvalidDueToChangesAfterImport;
    };
    for (MySingleFolder *folder : folders) {
        for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
            reportProgress(++done, count, step);
            if (pic->isVerifiedDuringSave && !pic->isInvalidDueToChangesAfterImport) {
                for (MySinglePic *member : withDependent(pic)) {
                    if (shouldSync(*member))
                        syncXmpDates(*member);
                }
            }
            pic->isVerifiedDuringSave = false;
            pic->isInvalidDueToChangesAfterImport = false;
        }
    }
    commitPlanned(outcome);
}

void SaveRun::syncXmpDates(MySinglePic &pic)
{
    const QString sidecar = pic.spXMPPath();
    const bool inSidecar = !sidecar.isEmpty();
    const QString path = inSidecar ? sidecar : pic.spPath();
    const int errorId =
        inSidecar ? SaveErrorId::XmpSidecarUnusable : SaveErrorId::XmpInFileUnreadable;
    if (inSidecar && !QFileInfo::exists(path)) {
        m_errors.addErrorID(SaveErrorId::XmpSidecarMissing, pic);
        return;
    }
    const auto [format, start] =
        inSidecar ? std::pair<int, quint32>(UnknownFormat, 0) : pic.xmpPacketSearch();
    std::optional<XmpDateInfos> infos =
        MySingleFolderDataReader().savereadXMPDatesAtPath(path, format, start);
    if (!infos) {
        m_errors.addErrorID(errorId, pic);
        return;
    }
    PlannedSave plan = StampEdits(pic, m_settings).planXmpSync(*infos);
    if (plan.needsXmpExtension) {
        // A sidecar's short stamps stay as they are: its twin is not the item's date.
        if (!inSidecar)
            m_exiftool.extendShortXmpDateTags(pic, plan.supportStamps);
        return;
    }
    if (plan.edits.empty())
        return;

    if (!inSidecar && pic.fileFormatType == PngFormat) {
        FileReader unwritten(path);
        if (const std::optional<ByteEdit> checksum =
                PngLocator(unwritten).chunkCrcEdit(PngLocator::ChunkKind::Xmp, plan.edits))
            plan.edits.push_back(*checksum);
    }
    // A sync leaves no trace in the file's own dates.
    const std::optional<FileTime> before = FileTime::modificationOf(path);
    const std::optional<FileAttributes> attributes = FileAttributes::read(path);
    if (!before || !attributes) {
        m_errors.addErrorID(errorId, pic);
        return;
    }
    const ByteProof proof = inSidecar ? ByteProof{attributes->size, {}}
                                      : StoredBytes::proof(pic.singlePicAttributes, attributes->size);
    // The planned stamps refer into the read stamps, which live on with the write: a moved map
    // keeps its elements where they are.
    const auto synced = std::make_shared<XmpDateInfos>(std::move(*infos));
    const auto finished = [this, &pic, errorId, inSidecar, whenSaved = std::move(plan.whenSaved),
                           synced](bool written, bool) {
        if (!written) {
            m_errors.addErrorID(errorId, pic);
            return;
        }
        for (const auto &taken : whenSaved)
            taken();
        // Stamps the item proves at its next save must read as the file now holds them.
        if (!inSidecar && pic.singlePicAttributes.xmpDateInfos) {
            for (auto &[key, record] : *pic.singlePicAttributes.xmpDateInfos) {
                const auto found = synced->find(key);
                if (found != synced->end() && found->second.offset == record.offset)
                    record.data = found->second.data;
            }
        }
    };
    PlannedWrite write{path, proof, std::move(plan.edits), *before, *before, finished};
    if (m_journal) {
        m_journal->plan(std::move(write));
        return;
    }
    const std::unique_ptr<InPlaceWriter> writer = m_disk.openForUpdate(path);
    const bool written = writer && writer->apply(write.edits) && writer->setModificationTime(*before) &&
                         writer->synchronize();
    write.finished(written, written);
}

void SaveRun::writeErrorLog()
{
    if (m_errors.isEmpty() || !m_log)
        return;
    // exiftool's own words follow the run's lists.
    const QString text = m_errors.logText(currentInstant()) + m_xt.errorsSummaryString();
    m_xt.clearErrors();
    m_log->setCurentError(text);
    m_log->updateLogOnDiskWithErrorLog(text);
}

} // namespace orv
