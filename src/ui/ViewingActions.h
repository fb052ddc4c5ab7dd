#pragma once

#include <QObject>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace orv {

class AppController;
class FullScreenView;
class MySinglePic;
class TimelinePane;
class VQSView;

// Looking and choosing in the window: the Rating menu (Keeper K, Neutral N, Reject X, on the
// main strip's selection), the grid over the main strip (Rating Grid, Ctrl+G), which takes
// the place of the list while open, and the full-screen view with its slideshow (F11, F5). While
// the grid or the full-screen view is open a rating refilters after a moment of calm, so an item
// rated out of the filter does not vanish under the key.
class ViewingActions : public QObject
{
    Q_OBJECT
public:
    // The grid goes beside listView in the splitter that holds it.
    ViewingActions(AppController &controller, TimelinePane &timeline, QWidget &listView, QWidget &window);

    // The Rating menu, before the last menu of the bar (Help): the ratings, then the grid, the
    // full-screen view and the slideshow.
    void addTo(QMenuBar &bar);

    VQSView &grid() const { return *m_grid; }
    FullScreenView &fullScreen() const { return *m_fullScreen; }
    QAction *gridAction() const { return m_gridAction; }
    QList<QAction *> ratingActions() const { return m_ratingActions; }

    void setGridOpen(bool open);
    void openFullScreen(MySinglePic *pic);

private:
    void buildRatingActions();
    void connectViews();
    void updateDeferring();

    AppController &m_controller;
    TimelinePane &m_timeline;
    QWidget &m_listView;
    VQSView *m_grid;
    FullScreenView *m_fullScreen;
    QList<QAction *> m_ratingActions;
    QAction *m_gridAction;
    QAction *m_fullScreenAction;
    QAction *m_slideshowAction;
};

} // namespace orv
