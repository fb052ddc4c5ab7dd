#include "app/AppController.h"

#include "app/RemoveCommand.h"
#include "app/RestoreStateCommand.h"
#include "core/LogController.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
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
      m_trashing(m_undoStack, m_dateChanges, changeListener()),
      m_ratings(m_undoStack, m_dateChanges,
                [this](const QList<MySinglePic *> &pics) {
                    Q_EMIT ratingsChanged(pics);
                    Q_EMIT expertRelevantChangeWasMade();
                }),
      m_moviePositions(m_undoStack,
                       [this](MySinglePic *movie) {
                           Q_EMIT moviePositionsChanged(movie);
                           Q_EMIT expertRelevantChangeWasMade();
                       }),
      m_dataSource(std::make_unique<MyDroppedFolders>(prefs, questions))
{
    connect(m_dataSource.get(), &MyDroppedFolders::folderEditModeChanged, this,
            &AppController::changedFolderEditMode);
    connect(m_dataSource.get(), &MyDroppedFolders::expertRelevantChangeWasMade, this,
            &AppController::expertRelevantChangeWasMade);
    // A folder that leaves the list takes its history with it.
    connect(m_dataSource.get(), &MyDroppedFolders::folderRemoved, this, [this](MySingleFolder *folder) {
        m_changeVerifier.unwatchFolder(*folder);
        if (!m_isMovingRestoredFolders)
            m_dateChanges.clearUndoRedoFromFolder(folder);
    });
    watchForOutsideChanges();
}

void AppController::watchForOutsideChanges()
{
    connect(m_dataSource.get(), &MyDroppedFolders::folderAdded, this,
            [this](MySingleFolder *folder) { m_changeVerifier.watchFolder(*folder); });
    // An import reads the files itself: the check waits for it.
    connect(m_dataSource.get(), &MyDroppedFolders::importStarted, &m_changeVerifier,
            &FolderChangeVerifier::stopVerification);
    connect(m_dataSource.get(), &MyDroppedFolders::importEnded, &m_changeVerifier,
            &FolderChangeVerifier::resumeVerification);
    connect(&m_changeVerifier, &FolderChangeVerifier::fileStatesChanged, this,
            [this](MySingleFolder *folder) { Q_EMIT reloadThumbs({folder}); });
    connect(&m_changeVerifier, &FolderChangeVerifier::watchLimitReached, this, [this](const QString &path) {
        m_log->updateLogOnDiskWithErrorLog(QStringLiteral("The system's limit of folder watches is reached: changes "
                                                          "made outside to %1 are found only when saving.\n")
                                               .arg(path));
        Q_EMIT watchLimitReached(path);
    });
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
    // A verification in flight reads an item: it ends before the folders go.
    m_changeVerifier.stopVerification();
    m_dataSource.reset();
}

void AppController::removePicsFromWorkingSet(const QList<MySinglePic *> &pics)
{
    if (m_dateChanges.isBlocked()) {
        Q_EMIT dateChangeRefused();
        return;
    }
    if (std::unique_ptr<RemoveCommand> command = RemoveCommand::forPics(pics, changeListener()))
        m_undoStack.push(command.release());
}

bool AppController::removeFoldersFromWorkingSet(const QList<MySingleFolder *> &folders)
{
    if (m_dateChanges.isBlocked())
        return false;
    return m_dataSource->removeFolders(folders);
}

QList<MySingleFolder *> AppController::unsavedFolders() const
{
    QList<MySingleFolder *> unsaved;
    for (MySingleFolder *folder : m_dataSource->droppedFolders())
        if (folder->isUnsavedFolder() || hasRatingsToWrite(*folder))
            unsaved.append(folder);
    return unsaved;
}

bool AppController::hasRatingsToWrite(const MySingleFolder &folder) const
{
    if (!m_prefs.boolForKey(QStringLiteral("writeRatingsToXMPOnSave")))
        return false;
    const QList<MySinglePic *> &pics = folder.sfPicDetails_fullArray;
    return std::any_of(pics.cbegin(), pics.cend(), [](const MySinglePic *pic) { return pic->groupXmpRatingToWrite(); });
}

void AppController::saveWillStart()
{
    m_dateChanges.setBlocked(true);
    m_moviePositions.setBlocked(true);
    // The save's own writes are no outside change.
    m_changeVerifier.stopVerification();
    m_foldersBeingSaved = unsavedFolders();
    for (MySingleFolder *folder : std::as_const(m_foldersBeingSaved))
        m_changeVerifier.willModifyFolder(*folder);
}

void AppController::saveEnded()
{
    m_dateChanges.setBlocked(false);
    m_moviePositions.setBlocked(false);
    for (MySingleFolder *folder : std::exchange(m_foldersBeingSaved, {}))
        m_changeVerifier.didModifyFolder(*folder);
    m_changeVerifier.resumeVerification();
}

void AppController::didSaveFolders(const QList<MySingleFolder *> &folders)
{
    saveEnded();
    for (const MySingleFolder *folder : folders)
        m_dateChanges.clearUndoRedoFromFolder(folder);
    Q_EMIT reloadThumbs(folders);
}

void AppController::saveWasCancelled(const QList<MySingleFolder *> &folders)
{
    saveEnded();
    Q_EMIT reloadThumbs(folders);
}

void AppController::adoptRestoredFolders(std::vector<std::unique_ptr<MySingleFolder>> folders,
                                         std::function<void(bool)> followed)
{
    if (folders.empty())
        return;
    m_undoStack.push(new RestoreStateCommand(*m_dataSource, std::move(folders), m_isMovingRestoredFolders,
                                             tr("Restore State"), changeListener(), std::move(followed)));
}

} // namespace orv
