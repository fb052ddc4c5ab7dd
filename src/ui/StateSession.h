#pragma once

#include "app/QuitDecision.h"
#include "states/StateRestore.h"
#include "states/StateTray.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class QMenu;
class QWidget;

namespace orv {

class AppController;
class MyThumbsQueue;
class StateKeeper;
class StateTrayWindow;
struct WindowsData;

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
    // The window's thumbnails: kept with a state, so that a restore shows them at once, and the
    // first one is the preview of a state in the tray.
    void setThumbnails(MyThumbsQueue &thumbs);
    // At start: states that a session which died had taken from the tray go back there; then the
    // kept state of the last session is offered back, and every change is kept from then on.
    void offerKeptState();
    void openStates(const QStringList &paths);

    // The window's side of the view a state keeps: what it shows now, how it shows a restored
    // state's view again, and what it puts in front at start (stateRestored: the last session's
    // work came back).
    struct WindowView
    {
        std::function<AdditionalData::ViewState()> take;
        std::function<void(const RestoredView &view, bool fromTray)> apply;
        std::function<void(const ViewAtQuit &atQuit, bool stateRestored)> showAtLaunch;
    };
    void setWindowView(WindowView view);

    // The quit asked for: the quit command used, read once, and the working set's state.
    QuitAnswer quitAnswer(bool hasUnsavedChanges);
    // The window closes keeping the working set: it is written now, for the next start.
    void keepAtQuit();
    // The window closes keeping nothing for the next start.
    void leaveNothingAtQuit();
    // After either: states taken from the tray are gone for good (to the desktop's trash), and
    // the window's layout and whether the tray was open are remembered.
    void lastActsAtQuit();
    // At start, once the window has its bars and side views: its frame and their places as the
    // last quit left them.
    void restoreWindowLayout();

    StateTrayWindow &showTray();
    StateTray &tray() { return m_tray; }

private:
    // followed is told when the restored folders come in and leave (undo, redo). Answers
    // whether the state was read.
    bool openState(const QString &path, std::function<void(bool)> followed = {}, bool fromTray = false);
    void openFromTray(const QString &statePath);
    void storeInTray(const QString &folder);
    QImage previewImage() const;
    // The main thumbnails the window has of the working set's items, by their place in the source.
    QByteArray thumbsFile() const;
    // The window as a state in the tray keeps it, and as opening one from the tray brings it back.
    WindowsData windowsData() const;
    void applyWindowsData(const WindowsData &data);
    // Qt's saved geometry and bars of the main window, each where there is one.
    void restoreFrame(const QByteArray &frame, const QByteArray &bars);
    void adoptThumbnails(const QList<std::pair<quint32, QByteArray>> &thumbnails);
    void chooseAndOpen();
    void keepAsPackage();
    void quitWith(CustomQuitState state);
    bool mayChangeWorkingSet() const;

    AppController &m_controller;
    QWidget &m_window;
    StateKeeper *m_keeper;
    StateTray m_tray;
    QPointer<StateTrayWindow> m_trayWindow;
    MyThumbsQueue *m_thumbs = nullptr;
    CustomQuitState m_customQuitState = CustomQuitState::Plain;
    WindowView m_view;
};

} // namespace orv
