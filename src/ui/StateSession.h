#pragma once

#include "app/QuitDecision.h"
#include "states/StateTray.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class QMenu;
class QWidget;

namespace orv {

class AppController;
class MySinglePic;
class StateKeeper;
class StateTrayWindow;

// The window's side of kept working sets: the question at start whether to restore the work of
// the last session, opening .orvstate packages (from the menu or dropped), the state tray, the
// quit decision and what a quit leaves for the next start. The keeping itself is StateKeeper's,
// the tray's files StateTray's.
class StateSession : public QObject
{
    Q_OBJECT
public:
    StateSession(AppController &controller, QWidget &window);

    void addActions(QMenu &file);
    // The two quits that say whether the working set is kept, beside the plain one.
    void addQuitActions(QMenu &file);
    // The preview image of a state kept in the tray is an item's thumbnail, as the window has it.
    void setThumbnailSource(std::function<QImage(const MySinglePic &)> thumbnailOf);
    // At start: states that a session which died had taken from the tray go back there; then the
    // kept state of the last session is offered back, and every change is kept from then on.
    void offerKeptState();
    void openStates(const QStringList &paths);

    // The quit asked for: the quit command used, read once, and the working set's state.
    QuitAnswer quitAnswer(bool hasUnsavedChanges);
    // The window closes keeping the working set: it is written now, for the next start.
    void keepAtQuit();
    // The window closes keeping nothing for the next start.
    void leaveNothingAtQuit();
    // After either: states taken from the tray are gone for good (to the desktop's trash), and
    // whether the tray was open is remembered.
    void lastActsAtQuit();

    StateTrayWindow &showTray();
    StateTray &tray() { return m_tray; }

private:
    // False when nothing was restored.
    bool openState(const QString &path, std::function<void(bool)> followed = {});
    void openFromTray(const QString &statePath);
    void storeInTray(const QString &folder);
    QImage previewImage() const;
    void chooseAndOpen();
    void keepAsPackage();
    void quitWith(CustomQuitState state);
    bool mayChangeWorkingSet() const;

    AppController &m_controller;
    QWidget &m_window;
    StateKeeper *m_keeper;
    StateTray m_tray;
    QPointer<StateTrayWindow> m_trayWindow;
    std::function<QImage(const MySinglePic &)> m_thumbnailOf;
    CustomQuitState m_customQuitState = CustomQuitState::Plain;
};

} // namespace orv
