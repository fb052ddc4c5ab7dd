#include "app/AppController.h"

#include "core/LogController.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"

namespace orv {

AppController::AppController(Preferences &prefs, ImportQuestions &questions, const QString &logFilePath,
                             QObject *parent)
    : QObject(parent),
      m_prefs(prefs),
      m_log(std::make_unique<LogController>(prefs, logFilePath)),
      m_dateChanges(m_undoStack, changeListener()),
      m_trackLinks(m_undoStack, m_tracks, m_dateChanges, changeListener()),
      m_dataSource(std::make_unique<MyDroppedFolders>(prefs, questions))
{
    connect(m_dataSource.get(), &MyDroppedFolders::folderEditModeChanged, this,
            &AppController::changedFolderEditMode);
    connect(m_dataSource.get(), &MyDroppedFolders::expertRelevantChangeWasMade, this,
            &AppController::expertRelevantChangeWasMade);
    // A folder that leaves the list takes its history with it.
    connect(m_dataSource.get(), &MyDroppedFolders::folderRemoved, this,
            [this](const MySingleFolder *folder) { m_dateChanges.clearUndoRedoFromFolder(folder); });
}

DateChangeListener AppController::changeListener()
{
    return {
        [this](const QList<MySingleFolder *> &folders) {
            // Places from tracks follow the dates in force, forwards and backwards alike.
            for (MySingleFolder *folder : folders)
                m_tracks.refreshTrackLocationsForFolder(*folder);
            Q_EMIT reloadThumbs(folders);
            Q_EMIT expertRelevantChangeWasMade();
        },
        [this](MySingleFolder *folder) { Q_EMIT changedFolderEditMode(folder); },
        [this] { Q_EMIT dateChangeRefused(); },
    };
}

AppController::~AppController()
{
    // The commands point at folders and items: they go before the folders do.
    m_undoStack.clear();
    m_dataSource.reset();
}

QList<MySingleFolder *> AppController::unsavedFolders() const
{
    QList<MySingleFolder *> unsaved;
    for (MySingleFolder *folder : m_dataSource->droppedFolders())
        if (folder->isUnsavedFolder())
            unsaved.append(folder);
    return unsaved;
}

void AppController::saveWillStart()
{
    m_dateChanges.setBlocked(true);
}

void AppController::didSaveFolders(const QList<MySingleFolder *> &folders)
{
    m_dateChanges.setBlocked(false);
    for (const MySingleFolder *folder : folders)
        m_dateChanges.clearUndoRedoFromFolder(folder);
    Q_EMIT reloadThumbs(folders);
}

void AppController::saveWasCancelled(const QList<MySingleFolder *> &folders)
{
    m_dateChanges.setBlocked(false);
    Q_EMIT reloadThumbs(folders);
}

} // namespace orv
