#pragma once

#include <QList>
#include <QSet>
#include <QTimer>
#include <QWidget>

class QActionGroup;
class QMenu;

namespace orv {

class MySingleFolder;
class MySinglePic;
class MyThumbsQueue;
class MyTimelinesController;
class MyTimelineView;
class Preferences;

// The timeline as the window's main pane: the controller of the strips with the source they
// share, the thumbnail queue, the main strip, and the Filter menu with the default predicates.
// The window tells it which folders exist and which are selected; it tells the window which item
// the user selected on the strip. Main thread only.
class TimelinePane : public QWidget
{
    Q_OBJECT
public:
    TimelinePane(Preferences &prefs, QWidget *parent = nullptr);
    ~TimelinePane() override;

    MyTimelinesController &controller() const { return *m_controller; }
    MyTimelineView &mainView() const { return *m_mainView; }
    MyThumbsQueue &thumbs() const { return *m_thumbs; }
    QMenu *filterMenu() const { return m_filterMenu; }

    // Every folder of the working set, whose items stand on the strip; rebuilds the source.
    void showFolders(const QList<MySingleFolder *> &folders);
    // The folders standing raised; none: all of them.
    void raiseFolders(const QList<MySingleFolder *> &folders);
    // Dates or items changed: the source is sorted again.
    void rebuild();
    // The list's selection, shown on the strip.
    void selectPic(MySinglePic *pic);

Q_SIGNALS:
    void picSelected(orv::MySinglePic *pic);
    // The filtered source changed: views over it refresh.
    void filteredSourceChanged();

private:
    void buildFilterMenu();
    void runThumbs();

    Preferences &m_prefs;
    MyTimelinesController *m_controller;
    MyThumbsQueue *m_thumbs;
    MyTimelineView *m_mainView;
    QMenu *m_filterMenu;
    QTimer m_thumbsTimer;
};

} // namespace orv
