#pragma once

#include "app/DateChanges.h"
#include "app/PicMoving.h"
#include "app/PicRatings.h"
#include "app/MoviePositionChanges.h"
#include "app/PicTrashing.h"
#include "app/TrackLinks.h"
#include "folders/FolderChangeVerifier.h"
#include "folders/MySingleFolder.h"
#include "places/LOTController.h"

#include <QList>
#include <QObject>
#include <QUndoStack>

#include <functional>
#include <memory>
#include <vector>

namespace orv {

class ImportQuestions;
class LogController;
class MyDroppedFolders;
class Preferences;

// The owner of the working set, free of widgets: the imported folders with the import driver
// (theDataSource), the one undo stack (uManager), the preferences in force and the error log.
// The window and the command-line tool change dates only through dateChanges(), and hear of
// every change by the signals below, named after the notifications the rest of the system
// knows.
//
// It lives on the main thread, and so does everything it owns that a view reads: items and
// folders change only there, through it or through the import's publication. A save runs on its
// own thread; from saveWillStart() to didSaveFolders() every date change is refused.
class AppController : public QObject
{
    Q_OBJECT
public:
    AppController(Preferences &prefs, ImportQuestions &questions, const QString &logFilePath,
                  QObject *parent = nullptr);
    ~AppController() override;

    MyDroppedFolders &theDataSource() const { return *m_dataSource; }
    QUndoStack &uManager() { return m_undoStack; }
    Preferences &prefs() const { return m_prefs; }
    LogController &log() const { return *m_log; }
    DateChanges &dateChanges() { return m_dateChanges; }
    // The imported GPX tracks, and the changes of places they make.
    LOTController &tracks() { return m_tracks; }
    TrackLinks &trackLinks() { return m_trackLinks; }
    // Items to the desktop's trash, with undo.
    PicTrashing &trashing() { return m_trashing; }
    // Keepers, neutrals and rejects, with undo.
    PicRatings &ratings() { return m_ratings; }
    // Files changed behind our back while imported: watched, proven, marked.
    FolderChangeVerifier &changeVerifier() { return m_changeVerifier; }
    // Items with their files into another imported folder, with undo.
    PicMoving &moving() { return m_moving; }

    // Items out of the working set, their files untouched: one undo step. Refused while a save runs.
    void removePicsFromWorkingSet(const QList<MySinglePic *> &pics);
    // Folders out of the working set, with their unsaved changes and their history: no undo.
    // False, and nothing removed, while an import or a save runs.
    bool removeFoldersFromWorkingSet(const QList<MySingleFolder *> &folders);

    // The positions remembered in movies, with undo.
    MoviePositionChanges &moviePositions() { return m_moviePositions; }

    // The folders a save would write: every one with unsaved changes.
    QList<MySingleFolder *> unsavedFolders() const;
    // Under writeRatingsToXMPOnSave: an item of the folder has a rating its file does not say
    // yet, which the next save writes.
    bool hasRatingsToWrite(const MySingleFolder &folder) const;
    bool isStandardBlocked() const { return m_dateChanges.isBlocked(); }
    void saveWillStart();
    // The save has ended: what was written can no longer be undone, and the views show what the
    // files now hold.
    void didSaveFolders(const QList<MySingleFolder *> &folders);
    // The save was cancelled before it wrote anything: the changes and their history stay.
    void saveWasCancelled(const QList<MySingleFolder *> &folders);
    // The folders of a restored state join the list as one undo step: undoing it takes them,
    // with their unsaved changes, out again.
    // followed is told when they come in (true) and leave (false).
    void adoptRestoredFolders(std::vector<std::unique_ptr<MySingleFolder>> folders,
                              std::function<void(bool)> followed = {});

Q_SIGNALS:
    // The dates in force of these folders' items changed (the source is to be rebuilt).
    void reloadThumbs(const QList<orv::MySingleFolder *> &folders);
    void changedFolderEditMode(orv::MySingleFolder *folder);
    void expertRelevantChangeWasMade();
    // A date change was refused; nothing changed.
    void dateChangeRefused();
    // The folders' watches ran out: changes made outside in this one are found by the save.
    void watchLimitReached(const QString &path);
    // These items' ratings changed (a rating, its undo or redo); filters that read ratings
    // refilter.
    void ratingsChanged(const QList<orv::MySinglePic *> &pics);
    // The movie's positions or the place its player stands changed.
    void moviePositionsChanged(orv::MySinglePic *movie);

private:
    DateChangeListener changeListener();
    void watchForOutsideChanges();
    void saveEnded();

    Preferences &m_prefs;
    std::unique_ptr<LogController> m_log;
    QUndoStack m_undoStack;
    DateChanges m_dateChanges;
    LOTController m_tracks;
    TrackLinks m_trackLinks;
    PicTrashing m_trashing;
    PicRatings m_ratings;
    FolderChangeVerifier m_changeVerifier;
    PicMoving m_moving{m_undoStack, m_dateChanges, m_changeVerifier, changeListener()};
    MoviePositionChanges m_moviePositions;
    QList<MySingleFolder *> m_foldersBeingSaved;
    // A restore is being undone or redone: its folders leave and come back with their history.
    bool m_isMovingRestoredFolders = false;
    // Last: its scan thread may still call back into the rest while it stops.
    std::unique_ptr<MyDroppedFolders> m_dataSource;
};

} // namespace orv
