#pragma once

#include "core/MySinglePic.h"
#include "core/SaveQuestions.h"
#include "folders/SaveRun.h"
#include "ui/PreSaveSummaryDialog.h"

#include <QFutureWatcher>
#include <QObject>

#include <memory>

namespace orv {

class LogController;
class Preferences;
class SaveProgressSheet;

// One save from the window: the run on a pool thread behind the modal progress sheet, the
// pre-save question on the way, and the error alert at the end. The folders must not change
// until finished() comes.
class SaveSession : public QObject, public SaveQuestions
{
    Q_OBJECT
public:
    SaveSession(QList<MySingleFolder *> folders, Preferences &prefs, LogController &log,
                PreSaveSummaryDialog::Thumbnail thumbnail, QWidget *window);
    // Waits for a run still going, serving its hops to this thread: it holds the folders.
    ~SaveSession() override;

    void start();
    // The user cancelled at the summary: nothing was written.
    bool wasCancelled() const;

    // Asked on the run's thread; the user answers on the main thread while the run waits.
    // The summary of what the save will change, before every save unless the user keeps it for
    // saves with problems.
    bool confirmSave(const PreSaveReview &review) override;
    bool addDateTagsToFileDatedItems() override;

Q_SIGNALS:
    // The run has ended and the files it wrote are synced. completed: it was not cancelled and
    // every file was saved; otherwise the problems are on show.
    void finished(bool completed);
    // The user went back from the summary: these items are to be selected, once the run is over.
    void cancelledChoosing(const QList<orv::MySinglePic *> &pics);

private:
    void runEnded();

    QWidget *m_window;
    Preferences &m_prefs;
    PreSaveSummaryDialog::Thumbnail m_thumbnail;
    QList<MySinglePic *> m_chosenOnCancel;
    LogController &m_log;
    SaveProgressSheet *m_sheet;
    std::unique_ptr<SaveRun> m_run;
    QFutureWatcher<SaveOutcome> m_watcher;
};

} // namespace orv
