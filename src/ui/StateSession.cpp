#include "ui/StateSession.h"

#include "app/AppController.h"
#include "app/StateKeeper.h"
#include "core/LogController.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "states/SavedFolders.h"
#include "states/SavedThumbs.h"
#include "states/StateFiles.h"
#include "states/WindowsData.h"
#include "thumbs/MyThumbsQueue.h"
#include "ui/ReconnectionSheet.h"
#include "ui/StateTrayWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QStandardPaths>
#include <QWidget>

namespace orv {

namespace {

const QString windowFrameKey = QStringLiteral("mainWindowFrame");
const QString stateAtQuitKey = QStringLiteral("stateAtQuitType");
const QString windowBarsKey = QStringLiteral("mainWindowBarsAndViews");

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
    QAction *tray = file.addAction(tr("State Tray"), this, [this] { showTray(); });
    tray->setObjectName(QStringLiteral("stateTrayAction"));
    tray->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_T));
    QAction *open = file.addAction(tr("Open Kept State…"), this, &StateSession::chooseAndOpen);
    open->setObjectName(QStringLiteral("openStateAction"));
    QAction *keep = file.addAction(tr("Keep Working Set As…"), this, &StateSession::keepAsPackage);
    keep->setObjectName(QStringLiteral("keepStateAction"));
}

void StateSession::offerKeptState()
{
    const StateTray::Moved recovered = m_tray.checkForUncleanedTempFiles();
    if (!recovered.problem.isEmpty())
        QMessageBox::warning(&m_window, tr("State Tray"),
                             tr("States opened from the tray before the program ended could not all be put back "
                                "into the tray:\n%1")
                                 .arg(recovered.problem));
    if (!recovered.path.isEmpty()) {
        showTray().showFolder(recovered.path);
        QMessageBox::information(&m_window, tr("State Tray"),
                                 tr("The program ended while states from the tray were open. They are back in the "
                                    "tray, under “States to Verify”."));
    } else if (m_controller.prefs().boolForKey(QStringLiteral("wasStateTrayOpen"))) {
        showTray();
    }
    // What was in front at the last quit comes back once, at this start.
    const ViewAtQuit atQuit = viewAtLaunch(int(m_controller.prefs().integerForKey(stateAtQuitKey)));
    m_controller.prefs().setInteger(stateAtQuitKey, 0);
    bool stateRestored = false;
    if (m_keeper->hasKeptState()) {
        const auto restoreWanted = [this] {
            QMessageBox question(QMessageBox::Question, tr("Restore Your Work"),
                                 tr("Do you want to continue with the work of your last session?"),
                                 QMessageBox::Yes | QMessageBox::No, &m_window);
            question.setInformativeText(tr("Its folders come back with every change that was not saved yet."));
            question.button(QMessageBox::Yes)->setText(tr("Restore"));
            question.button(QMessageBox::No)->setText(tr("Start Empty"));
            question.setDefaultButton(QMessageBox::Yes);
            return question.exec() == QMessageBox::Yes;
        };
        const QString kept = m_keeper->keptStatePath();
        // A quit that kept the work brings it back as it was; work that only the background
        // writer kept, as after a crash or a kill, is offered first.
        const bool keptByQuit = atQuit.navigationTag > 0;
        if (keptByQuit || restoreWanted()) {
            stateRestored = openState(kept);
            // An older generation is read once: the work is kept as the newest from now on.
            if (stateRestored && kept != StateFiles::quitFoldersPath())
                m_keeper->setKeptStateAside(QStringLiteral("read"));
        } else if (m_keeper->setKeptStateAside().isEmpty()) {
            QMessageBox::warning(&m_window, tr("Restore Your Work"),
                                 tr("The kept work could not be moved aside: %1").arg(kept));
        }
    }
    if (m_view.showAtLaunch)
        m_view.showAtLaunch(atQuit, stateRestored);
    // The thumbnails belong to the state as it was at quit, which is rewritten from now on.
    QFile::remove(StateFiles::thumbsFileOf(StateFiles::quitFoldersPath()));
    m_keeper->start();
}

void StateSession::openStates(const QStringList &paths)
{
    for (const QString &path : paths)
        openState(path);
}

bool StateSession::openState(const QString &path, std::function<void(bool)> followed, bool fromTray)
{
    const StateRestore::Restored restored = m_keeper->restore(path, std::move(followed));
    if (!restored.read.problem.isEmpty()) {
        QString text = tr("The state could not be opened: %1").arg(restored.read.problem);
        if (!restored.keptAsidePath.isEmpty())
            text += QLatin1Char('\n') + tr("It was kept as %1.").arg(restored.keptAsidePath);
        QMessageBox::warning(&m_window, tr("State Not Opened"), text);
        return false;
    }
    adoptThumbnails(restored.thumbnails);
    if (m_view.apply)
        m_view.apply(restored.view, fromTray);
    if (!restored.report.isClean()) {
        QMessageBox message(QMessageBox::Information, tr("State Restored"),
                            tr("Some folders or files are not as the state kept them. Files that changed or "
                               "went away are marked and are not saved."),
                            QMessageBox::Ok, &m_window);
        message.setDetailedText(findingsText(restored.report.lines()));
        message.exec();
    }
    if (!restored.report.missingFolders.isEmpty() && !ReconnectionSheet::disconnectedFolders(m_controller).isEmpty())
        ReconnectionSheet(m_controller, &m_window).exec();
    return true;
}

void StateSession::setWindowView(WindowView view)
{
    m_view = std::move(view);
    m_keeper->setViewProvider(m_view.take);
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

void StateSession::setThumbnails(MyThumbsQueue &thumbs)
{
    m_thumbs = &thumbs;
}

QByteArray StateSession::thumbsFile() const
{
    QList<ThumbRecord> records;
    for (const MySingleFolder *folder : m_controller.theDataSource().droppedFolders())
        for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
            if (const ThumbEntry *entry = m_thumbs ? m_thumbs->cache().entry(pic->sessionUniqueId) : nullptr;
                entry && pic->indexInSource_full >= 0)
                records.append({pic->indexInSource_full, entry->compressedData, 0.0});
    // Records in the order of the source, as a reader expects them.
    std::ranges::sort(records, {}, &ThumbRecord::indexInSource);
    return SavedThumbs::write(records);
}

void StateSession::adoptThumbnails(const QList<std::pair<quint32, QByteArray>> &thumbnails)
{
    if (!m_thumbs)
        return;
    for (const auto &[id, data] : thumbnails) {
        ThumbEntry entry;
        entry.compressedData = data;
        m_thumbs->cache().insert(id, std::move(entry));
        Q_EMIT m_thumbs->thumbReady(id);
    }
}

void StateSession::addQuitActions(QMenu &file)
{
    QAction *keeping = file.addAction(tr("Quit and Keep Working Set"), this,
                                      [this] { quitWith(CustomQuitState::WithState); });
    keeping->setObjectName(QStringLiteral("quitWithStateAction"));
    QAction *leaving = file.addAction(tr("Quit Without Keeping Working Set"), this,
                                      [this] { quitWith(CustomQuitState::WithoutState); });
    leaving->setObjectName(QStringLiteral("quitWithoutStateAction"));
}

void StateSession::quitWith(CustomQuitState state)
{
    m_customQuitState = state;
    m_window.close();
}

QuitAnswer StateSession::quitAnswer(bool hasUnsavedChanges)
{
    QuitSituation situation;
    situation.customQuitState = std::exchange(m_customQuitState, CustomQuitState::Plain);
    situation.savingStateIsDefaultOption = m_controller.prefs().boolForKey(QStringLiteral("savingStateIsDefaultOption"));
    situation.isStandardBlocked = !mayChangeWorkingSet();
    situation.hasFolders = !m_controller.theDataSource().droppedFolders().isEmpty();
    situation.hasUnsavedChanges = hasUnsavedChanges;
    return orv::quitAnswer(situation);
}

void StateSession::keepAtQuit()
{
    m_keeper->writeNow();
    if (!QFileInfo::exists(StateFiles::quitFoldersPath())
        || !m_controller.prefs().boolForKey(QStringLiteral("includeThumbsInStateFiles")))
        return;
    // Thumbnails are only a head start: a state restores without them.
    if (const QString problem = StateFiles::writeDurably(StateFiles::thumbsFileOf(StateFiles::quitFoldersPath()), thumbsFile());
        !problem.isEmpty())
        m_controller.log().updateLogOnDiskWithErrorLog(tr("The thumbnails were not kept: %1\n").arg(problem));
}

void StateSession::leaveNothingAtQuit()
{
    if (const QString problem = m_keeper->discardKeptState(); !problem.isEmpty())
        QMessageBox::warning(&m_window, tr("Working Set"),
                             tr("The working set kept for the next start could not be removed: %1").arg(problem));
}

void StateSession::restoreWindowLayout()
{
    const Preferences &prefs = m_controller.prefs();
    restoreFrame(prefs.dataForKey(windowFrameKey), prefs.dataForKey(windowBarsKey));
}

void StateSession::restoreFrame(const QByteArray &frame, const QByteArray &bars)
{
    auto *window = qobject_cast<QMainWindow *>(&m_window);
    // A frame kept on a screen that is gone is put on one that is here by Qt itself.
    if (window && !frame.isEmpty())
        window->restoreGeometry(frame);
    if (window && !bars.isEmpty())
        window->restoreState(bars);
}

void StateSession::lastActsAtQuit()
{
    if (auto *window = qobject_cast<QMainWindow *>(&m_window)) {
        m_controller.prefs().setValue(windowFrameKey, window->saveGeometry());
        m_controller.prefs().setValue(windowBarsKey, window->saveState());
    }
    m_controller.prefs().setBool(QStringLiteral("wasStateTrayOpen"), m_trayWindow && m_trayWindow->isVisible());
    if (m_view.take)
        m_controller.prefs().setInteger(stateAtQuitKey, m_view.take().stateAtQuitType);
    if (const QString problem = m_tray.deleteTempDeletedStatePath(); !problem.isEmpty())
        QMessageBox::warning(&m_window, tr("State Tray"),
                             tr("The states opened from the tray could not be moved to the trash; they come back "
                                "into the tray at the next start.\n%1")
                                 .arg(problem));
}

bool StateSession::mayChangeWorkingSet() const
{
    return !m_controller.isStandardBlocked() && !m_controller.theDataSource().isImportInProgress();
}

StateTrayWindow &StateSession::showTray()
{
    if (!m_trayWindow) {
        m_trayWindow = new StateTrayWindow(m_tray, m_controller.prefs(), &m_window);
        connect(m_trayWindow, &StateTrayWindow::storeRequested, this, &StateSession::storeInTray);
        connect(m_trayWindow, &StateTrayWindow::openRequested, this, &StateSession::openFromTray);
    }
    m_trayWindow->refreshData();
    m_trayWindow->show();
    m_trayWindow->raise();
    m_trayWindow->activateWindow();
    return *m_trayWindow;
}

QImage StateSession::previewImage() const
{
    if (!m_thumbs)
        return {};
    for (const MySingleFolder *folder : m_controller.theDataSource().droppedFolders())
        for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
            if (const ThumbEntry *entry = m_thumbs->cache().entry(pic->sessionUniqueId))
                return entry->currentSizeImage();
    return {};
}

void StateSession::storeInTray(const QString &folder)
{
    const QList<MySingleFolder *> folders = m_controller.theDataSource().droppedFolders();
    if (folders.isEmpty() || !mayChangeWorkingSet()) {
        QMessageBox::information(m_trayWindow, tr("State Tray"),
                                 folders.isEmpty() ? tr("There are no folders to keep.")
                                                   : tr("The working set can be kept once the import or save has ended."));
        return;
    }
    const bool withThumbs = m_controller.prefs().boolForKey(QStringLiteral("includeThumbsInStateFilesTray"));
    const StateFiles::NewPackage package =
        m_tray.storeState(folder, SavedFolders::write(folders), TrayPreview::previewDataForCurrentState(folders),
                          previewImage(), withThumbs ? thumbsFile() : QByteArray(), m_keeper->additionalData(),
                          windowsData().toCbor());
    if (!package.problem.isEmpty()) {
        QMessageBox::warning(m_trayWindow, tr("Working Set Not Kept"), package.problem);
        return;
    }
    // The working set has been handed to the tray: the window starts empty.
    MyDroppedFolders &dataSource = m_controller.theDataSource();
    for (MySingleFolder *each : folders)
        dataSource.releaseFolder(each);
    if (m_trayWindow)
        m_trayWindow->refreshData();
}

void StateSession::openFromTray(const QString &statePath)
{
    if (!mayChangeWorkingSet())
        return;
    // The opened state leaves the tray while the working set holds it, and comes back when its
    // opening is undone.
    auto taken = std::make_shared<QString>();
    const auto followed = [this, taken, statePath](bool opened) {
        if (!opened && taken->isEmpty())
            return; // it never left the tray
        const StateTray::Moved moved = opened ? m_tray.takeOver(statePath) : m_tray.putBack(*taken, statePath);
        if (!moved.problem.isEmpty())
            QMessageBox::warning(&m_window, tr("State Tray"), moved.problem);
        if (opened)
            *taken = moved.path;
        if (m_trayWindow)
            m_trayWindow->refreshData();
    };
    // Read before the opening moves the package out of the tray.
    const std::optional<WindowsData> window = WindowsData::ofPackage(statePath);
    if (openState(statePath, followed, true) && window &&
        !m_controller.prefs().boolForKey(QStringLiteral("stateTrayIgnoreWindowData")))
        applyWindowsData(*window);
}

WindowsData StateSession::windowsData() const
{
    WindowsData data;
    if (const auto *window = qobject_cast<const QMainWindow *>(&m_window)) {
        data.mainWindowFrame = window->saveGeometry();
        data.mainWindowBars = window->saveState();
    }
    data.settings = WindowsData::settingsOf(m_controller.prefs());
    return data;
}

void StateSession::applyWindowsData(const WindowsData &data)
{
    data.applySettings(m_controller.prefs());
    restoreFrame(data.mainWindowFrame, data.mainWindowBars);
}

} // namespace orv
