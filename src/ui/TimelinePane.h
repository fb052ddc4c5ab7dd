#pragma once

#include <QList>
#include <QMimeData>
#include <QSet>
#include <QTimer>
#include <QWidget>

#include <optional>

#include "ui/MyTimelineView.h"

class QActionGroup;
class QMenu;
class QSplitter;

namespace orv {

class MySingleFolder;
class MySinglePic;
class MyThumbsQueue;
class MyTimelinesController;
class MyTimelineView;
class Preferences;
class TimelineStrip;

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
    // The Filter menu's entry that is on: the key of its filter template, 0 for No Filter.
    int filterOption() const;
    // Turns the entry of that key on, as the user would; an unknown key changes nothing.
    void chooseFilterOption(int option);
    // Larger and Smaller Thumbnails (Ctrl+plus, Ctrl+minus), Add Mirror Strip, Add Shelf Strip,
    // Remove Last Strip.
    QMenu *stripsMenu() const { return m_stripsMenu; }
    // The strips on screen, the main one first.
    const QList<MyTimelineView *> &views() const { return m_views; }
    // A mirror (TimelineStrip::MainOrMirror) or a shelf under the main strip; null when three
    // strips stand.
    MyTimelineView *addTimelineForMode(int splitMode);
    void removeLastTimeline();

    // Every folder of the working set, whose items stand on the strip; rebuilds the source.
    void showFolders(const QList<MySingleFolder *> &folders);
    // The folders standing raised; none: all of them.
    void raiseFolders(const QList<MySingleFolder *> &folders);
    // Dates or items changed: the source is sorted again.
    void rebuild();
    // The list's selection, shown on the strip.
    void selectPic(MySinglePic *pic);
    // Several items selected on the main strip, main among them and in view.
    void selectPics(const QList<MySinglePic *> &pics, MySinglePic *main);
    // Thumbnails larger (positive) or smaller by so many size modes; the timeline height is kept
    // in the preferences, and the strips take the room the size needs.
    void zoom(int steps);
    // The part of the main strip's items a grid over it shows (none: no grid open): its
    // thumbnails are built first.
    void setGridRange(std::optional<ThumbRange> range);

Q_SIGNALS:
    void picSelected(orv::MySinglePic *pic);
    // The filtered source changed: views over it refresh.
    void filteredSourceChanged();
    // A mirror or shelf strip came on screen.
    void viewAdded(orv::MyTimelineView *view);
    // A strip chose an item of a folder that is not raised: select the folder (or add it).
    void folderChosen(orv::MySinglePic *pic, bool adding);
    // Files from outside dropped on a strip; toShelf when that strip is a shelf.
    void filesDropped(const QMimeData *mime, Qt::KeyboardModifiers keys, bool toShelf);

private:
    void buildFilterMenu();
    void buildStripsMenu();
    MyTimelineView *addView(TimelineStrip &strip);
    void runThumbs();
    void applyOptions();

    Preferences &m_prefs;
    MyTimelinesController *m_controller;
    MyThumbsQueue *m_thumbs;
    QSplitter *m_splitter;
    QList<MyTimelineView *> m_views;
    MyTimelineView *m_mainView;
    QMenu *m_filterMenu;
    QActionGroup *m_filterGroup = nullptr;
    QMenu *m_stripsMenu;
    TimelineViewOptions m_options;
    QTimer m_thumbsTimer;
    std::optional<ThumbRange> m_gridRange;
};

} // namespace orv
