#pragma once

#include "states/StateRestore.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <functional>

namespace orv {

class AppController;

// Keeps the working set on disk so that neither a quit nor a kill loses it: about a second after
// the last change on the undo stack, an import or a save, the folders are encoded on the main
// thread (in parallel, while it waits) and written in the background to a new file that is
// synced and renamed over the last one; at quit the same is done at once. The window makes one;
// the command-line tool never does, so a script never overwrites the user's kept work.
class StateKeeper : public QObject
{
    Q_OBJECT
public:
    StateKeeper(AppController &controller, QString foldersPath, QObject *parent = nullptr);
    ~StateKeeper() override;

    static constexpr int debounceMilliseconds = 1000;

    // A state kept by the last session, waiting to be offered back.
    bool hasKeptState() const;
    // Its folders file: the newest generation found (savedFolders_v6, then the older names
    // beside it); empty when there is none.
    QString keptStatePath() const;
    // Restores the kept state (or a package) into the working set; the kept state takes the
    // place of nothing: its folders join those there.
    // The folders come in as one undo step; followed is told when they come in and leave.
    StateRestore::Restored restore(const QString &statePath, std::function<void(bool)> followed = {});
    // The user declined the kept state, or it was of an older generation, which is read once and
    // never written: it is moved aside with its additional data, never deleted, labelled why.
    QString setKeptStateAside(const QString &why = {});
    // The user quits without keeping the working set: nothing more is written, and the kept
    // state goes to the desktop's trash (deleted where there is no trash). Empty on success.
    QString discardKeptState();
    // The working set's additional data (its tracks and the window's view) as a state keeps it.
    QByteArray additionalData() const;
    // The window's view at the moment of a write; none without a window.
    void setViewProvider(std::function<AdditionalData::ViewState()> provider);

    // From now on every change is kept. Until then the kept state is left for the question.
    void start();
    // Writes now and waits for it: at quit.
    void writeNow();

Q_SIGNALS:
    // A write failed; the previous state on disk is whole.
    void writeFailed(const QString &problem);

private:
    void noteChange();
    void writeInBackground();

    AppController &m_controller;
    QString m_foldersPath;
    QTimer m_debounce;
    // One writer, so that writes land in the order they were made.
    QThreadPool m_writer;
    bool m_started = false;
    // The additional data as last written; the writer's thread alone touches it.
    QByteArray m_additionalWritten;
    // The tracks as last encoded, and their keys; the window's thread alone touches them.
    mutable QByteArray m_encodedTracks;
    mutable QStringList m_encodedTrackKeys;
    std::function<AdditionalData::ViewState()> m_viewProvider;
};

} // namespace orv
