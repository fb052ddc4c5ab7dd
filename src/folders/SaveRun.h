#pragma once

#include "core/ExiftoolBridge.h"
#include "core/SaveErrors.h"
#include "core/SaveQuestions.h"
#include "core/SaveSettings.h"
#include "core/XtController.h"
#include "formats/SaveJournal.h"

#include <QFuture>
#include <QList>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QThreadPool>

#include <functional>

namespace orv {

class FileWriteAccess;
class LogController;
class MySingleFolder;
class MySinglePic;

// How a run ended.
struct SaveOutcome
{
    bool cancelled = false;              // the pre-save question was answered with cancel
    PreSaveErrors preSaveErrors;         // what the pre-check found
    QSet<const MySinglePic *> savedPics; // items whose save succeeded, dependents included
    // The journal cannot be written: the run stopped before it touched a file, for this reason
    // (the journal's folder and the cause).
    QString journalProblem;
};

// One save of the given folders: a pre-check of every item with one fixed "now" and one copy of
// the options, the question when the pre-check found something, the write pass, the XMP sync
// pass, and the folders' end (offsets cleared; a folder with failed items in together mode turns
// to separate mode, its failed items keeping their pending offset). The errors go to the run's
// lists and, as text, to the error log. Every file's edits go to the save journal before the
// file is written, so that a run that is killed is finished at the next start and the last run
// can be undone after a restart: the run holds the journal's lock throughout, waiting for
// another process's run first, and a journal that cannot be written stops it before any file
// is touched. A folder's files are planned on the pool, then committed together.
//
// run() works on the calling thread (and saves the items of a folder on a pool of its own);
// start() runs it on a pool thread. Progress and status come as signals from the run's thread,
// so a window connects them queued. A folder's end (its offsets cleared, its mode, its counts)
// is applied on the thread the run object lives on, the main thread, while the run waits: what
// the views and the undo history read of a folder changes there. Until finished, the items
// themselves belong to the run's threads: nothing else may touch them, and views read none.
class SaveRun : public QObject
{
    Q_OBJECT
public:
    SaveRun(QList<MySingleFolder *> folders, SaveSettings settings, SaveQuestions &questions,
            LogController *log = nullptr, FileWriteAccess *disk = nullptr);
    ~SaveRun() override;

    // Only the pre-check: the NEW values of every item and what stands in the way of writing
    // them. Touches no file.
    PreSaveErrors preProcess();
    // The items a save writes, in folder order.
    QList<MySinglePic *> dueItems() const;
    SaveOutcome run();
    QFuture<SaveOutcome> start();

    const SaveErrors &errors() const { return m_errors; }

Q_SIGNALS:
    // "workPanelPreSave", "workPanelSave", "workPanelSyncXMP", "workPanelWaitingForOtherSave".
    void statusChanged(const QString &statusKey);
    void progressMaximumChanged(int maximum);
    void progressChanged(int value);
    void finished(bool cancelled);
    // The folder's end is applied; emitted on the run object's own thread.
    void folderSaved(orv::MySingleFolder *folder);

private:
    QList<MySingleFolder *> foldersToSave() const;
    bool isDue(const MySinglePic &pic) const;
    int countDue(const QList<MySingleFolder *> &folders) const;
    void saveThread(SaveOutcome &outcome);
    // Writes what the pass planned; false when the journal failed and the run must stop.
    bool commitPlanned(SaveOutcome &outcome);
    void syncXMPDataThread(const QList<MySingleFolder *> &folders, SaveOutcome &outcome);
    void syncXmpDates(MySinglePic &pic);
    // The ratings pass: the saved items whose rating the files do not say yet write it.
    void writeRatingsThread(const QList<MySingleFolder *> &folders, SaveOutcome &outcome);
    bool hasRatingToWrite(const MySinglePic &pic) const;
    void clearDateValuesAfterSavingFolder(MySingleFolder &folder);
    // Runs work on the run object's thread, waiting for it; directly when called there.
    void runOnOwnerThread(const std::function<void()> &work);
    void writeErrorLog();
    void startProgress(int maximum);
    void reportProgress(int done, int count, int step);

    QList<MySingleFolder *> m_folders;
    SaveSettings m_settings;
    SaveQuestions &m_questions;
    LogController *m_log;
    FileWriteAccess &m_disk;
    SaveErrors m_errors;
    // One exiftool child serves the whole run; it ends with the run.
    XtController m_xt;
    ExiftoolBridge m_exiftool{m_xt, m_errors, m_settings, m_questions};
    std::unique_ptr<SaveJournal> m_journal;
    QThreadPool m_savePool;
    QMutex m_progressMutex;
    int m_progress = 0;
};

} // namespace orv
