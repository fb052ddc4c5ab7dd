#include "ui/SaveSession.h"

#include "core/LogController.h"
#include "core/Preferences.h"
#include "core/SaveSettings.h"
#include "ui/ErrorLogWindow.h"
#include "ui/SaveErrorsDialog.h"
#include "ui/SaveProgressSheet.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace orv {

namespace {

// On: the summary comes only when the pre-check found something.
const QString summaryOnlyOnProblemsKey = QStringLiteral("isPreSaveSummaryOnlyOnProblems");

} // namespace

SaveSession::SaveSession(QList<MySingleFolder *> folders, Preferences &prefs, LogController &log,
                         PreSaveSummaryDialog::Thumbnail thumbnail, QWidget *window)
    : QObject(window),
      m_window(window),
      m_prefs(prefs),
      m_thumbnail(std::move(thumbnail)),
      m_log(log),
      m_sheet(new SaveProgressSheet(window)),
      m_run(std::make_unique<SaveRun>(std::move(folders), SaveSettings::fromPreferences(prefs, currentInstant()),
                                      *this, &log))
{
    // The run reports from its own threads.
    connect(m_run.get(), &SaveRun::statusChanged, m_sheet, &SaveProgressSheet::showStatus, Qt::QueuedConnection);
    connect(m_run.get(), &SaveRun::progressMaximumChanged, m_sheet, &SaveProgressSheet::setMaximum,
            Qt::QueuedConnection);
    connect(m_run.get(), &SaveRun::progressChanged, m_sheet, &SaveProgressSheet::setValue, Qt::QueuedConnection);
    connect(&m_watcher, &QFutureWatcher<SaveOutcome>::finished, this, &SaveSession::runEnded);
}

SaveSession::~SaveSession()
{
    // The run hands each folder's end to this thread and waits for it: keep serving it until
    // the run is over, telling no one.
    m_watcher.disconnect();
    while (m_watcher.isRunning())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    delete m_sheet;
}

void SaveSession::start()
{
    m_sheet->show();
    m_watcher.setFuture(m_run->start());
}

bool SaveSession::confirmSave(const PreSaveReview &review)
{
    if (review.errors.isEmpty() && (review.items.isEmpty() || m_prefs.boolForKey(summaryOnlyOnProblemsKey)))
        return true;
    bool proceed = false;
    QMetaObject::invokeMethod(
        this,
        [&] {
            // The question replaces the progress for as long as the user decides.
            m_sheet->hide();
            const PreSaveSummary summary(review);
            PreSaveSummaryDialog question(summary, m_thumbnail, !m_prefs.boolForKey(summaryOnlyOnProblemsKey), m_window);
            proceed = question.exec() == QDialog::Accepted;
            m_prefs.setBool(summaryOnlyOnProblemsKey, !question.showsEverySave());
            if (proceed)
                m_sheet->show();
            else
                m_chosenOnCancel = PreSaveSummary::selectionToHandBack(question.chosenPics(), question.listedPics());
        },
        Qt::BlockingQueuedConnection);
    return proceed;
}

bool SaveSession::addDateTagsToFileDatedItems()
{
    bool add = false;
    QMetaObject::invokeMethod(
        this,
        [&] {
            add = QMessageBox::question(
                      m_window, tr("Add date tags?"),
                      tr("Some files have no date tags: their date is the file's creation date, "
                         "which cannot be changed on this system. Add date tags that hold the new "
                         "date (through exiftool), so that the next import reads it? Without them "
                         "only the files' modification date is set, and the next import reads the "
                         "new date only where it is earlier than the file's creation.")) ==
                  QMessageBox::Yes;
        },
        Qt::BlockingQueuedConnection);
    return add;
}

bool SaveSession::wasCancelled() const
{
    return m_watcher.isFinished() && m_watcher.result().cancelled;
}

void SaveSession::runEnded()
{
    m_sheet->hide();
    const bool cancelled = m_watcher.result().cancelled;
    const QString journalProblem = m_watcher.result().journalProblem;
    const bool failed = !m_run->errors().isEmpty() || !journalProblem.isEmpty();
    if (failed) {
        auto *alert = new SaveErrorsDialog(journalProblem.isEmpty() ? m_log.currentError() : journalProblem, m_window);
        alert->setAttribute(Qt::WA_DeleteOnClose);
        connect(alert, &SaveErrorsDialog::showLogRequested, m_window,
                [&log = m_log, window = m_window] { ErrorLogWindow::showFor(log, window); });
        alert->open();
    }
    Q_EMIT finished(!cancelled && !failed);
    if (cancelled && !m_chosenOnCancel.isEmpty())
        Q_EMIT cancelledChoosing(m_chosenOnCancel);
}

} // namespace orv
