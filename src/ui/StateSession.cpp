#include "ui/StateSession.h"

#include "app/AppController.h"
#include "app/StateKeeper.h"
#include "folders/MyDroppedFolders.h"
#include "states/SavedFolders.h"
#include "states/StateFiles.h"

#include <QAbstractButton>
#include <QAction>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QStandardPaths>
#include <QWidget>

namespace orv {

namespace {

// A long list of findings is cut to what a message can show.
QString findingsText(const QStringList &lines)
{
    constexpr qsizetype shown = 20;
    QString text = lines.mid(0, shown).join(QLatin1Char('\n'));
    if (lines.size() > shown)
        text += QLatin1Char('\n') + StateSession::tr("… and %n more", nullptr, int(lines.size() - shown));
    return text;
}

} // namespace

StateSession::StateSession(AppController &controller, QWidget &window)
    : QObject(&window), m_controller(controller), m_window(window),
      m_keeper(new StateKeeper(controller, StateFiles::quitFoldersPath(), this))
{
    connect(m_keeper, &StateKeeper::writeFailed, this, [this](const QString &problem) {
        QMessageBox::warning(&m_window, tr("Working Set Not Kept"),
                             tr("The working set could not be kept for the next start; the one kept before "
                                "stays.\n%1")
                                 .arg(problem));
    });
}

void StateSession::addActions(QMenu &file)
{
    QAction *open = file.addAction(tr("Open Kept State…"), this, &StateSession::chooseAndOpen);
    open->setObjectName(QStringLiteral("openStateAction"));
    QAction *keep = file.addAction(tr("Keep Working Set As…"), this, &StateSession::keepAsPackage);
    keep->setObjectName(QStringLiteral("keepStateAction"));
}

void StateSession::offerKeptState()
{
    if (m_keeper->hasKeptState()) {
        QMessageBox question(QMessageBox::Question, tr("Restore Your Work"),
                             tr("Do you want to continue with the work of your last session?"),
                             QMessageBox::Yes | QMessageBox::No, &m_window);
        question.setInformativeText(tr("Its folders come back with every change that was not saved yet."));
        question.button(QMessageBox::Yes)->setText(tr("Restore"));
        question.button(QMessageBox::No)->setText(tr("Start Empty"));
        question.setDefaultButton(QMessageBox::Yes);
        if (question.exec() == QMessageBox::Yes) {
            openState(StateFiles::quitFoldersPath());
        } else if (m_keeper->setKeptStateAside().isEmpty()) {
            QMessageBox::warning(&m_window, tr("Restore Your Work"),
                                 tr("The kept work could not be moved aside: %1").arg(StateFiles::quitFoldersPath()));
        }
    }
    m_keeper->start();
}

void StateSession::openStates(const QStringList &paths)
{
    for (const QString &path : paths)
        openState(path);
}

void StateSession::openState(const QString &path)
{
    const StateRestore::Restored restored = m_keeper->restore(path);
    if (!restored.read.problem.isEmpty()) {
        QString text = tr("The state could not be opened: %1").arg(restored.read.problem);
        if (!restored.keptAsidePath.isEmpty())
            text += QLatin1Char('\n') + tr("It was kept as %1.").arg(restored.keptAsidePath);
        QMessageBox::warning(&m_window, tr("State Not Opened"), text);
        return;
    }
    if (!restored.report.isClean()) {
        QMessageBox message(QMessageBox::Information, tr("State Restored"),
                            tr("Some folders or files are not as the state kept them. Files that changed or "
                               "went away are marked and are not saved."),
                            QMessageBox::Ok, &m_window);
        message.setDetailedText(findingsText(restored.report.lines()));
        message.exec();
    }
}

void StateSession::chooseAndOpen()
{
    const QString path = QFileDialog::getExistingDirectory(&m_window, tr("Open Kept State"));
    if (!path.isEmpty())
        openState(path);
}

void StateSession::keepAsPackage()
{
    const QList<MySingleFolder *> folders = m_controller.theDataSource().droppedFolders();
    if (folders.isEmpty() || m_controller.isStandardBlocked())
        return;
    const QString parent = QFileDialog::getExistingDirectory(
        &m_window, tr("Keep Working Set In"), QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    if (parent.isEmpty())
        return;
    const StateFiles::NewPackage package =
        StateFiles::writePackage(parent, SavedFolders::write(folders), m_keeper->additionalData());
    if (!package.problem.isEmpty())
        QMessageBox::warning(&m_window, tr("Working Set Not Kept"), package.problem);
}

void StateSession::keepAtQuit()
{
    m_keeper->writeNow();
}

} // namespace orv
