#pragma once

#include <QObject>
#include <QString>

class QMenu;
class QWidget;

namespace orv {

class AppController;
class StateKeeper;

// The window's side of kept working sets: the question at start whether to restore the work of
// the last session, opening .orvstate packages (from the menu or dropped), keeping the working
// set as a package, and the state written at quit. The keeping itself is StateKeeper's.
class StateSession : public QObject
{
    Q_OBJECT
public:
    StateSession(AppController &controller, QWidget &window);

    void addActions(QMenu &file);
    // At start: offers the kept state of the last session back, then keeps every change.
    void offerKeptState();
    void openStates(const QStringList &paths);
    // The window closes: the working set is written now, for the next start.
    void keepAtQuit();

private:
    void openState(const QString &path);
    void chooseAndOpen();
    void keepAsPackage();

    AppController &m_controller;
    QWidget &m_window;
    StateKeeper *m_keeper;
};

} // namespace orv
