#include "ui/ViewingActions.h"

#include "app/AppController.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/FullScreenView.h"
#include "ui/MyTimelineView.h"
#include "ui/TimelinePane.h"
#include "ui/VQSView.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QSplitter>

namespace orv {

ViewingActions::ViewingActions(AppController &controller, TimelinePane &timeline, QWidget &listView, QWidget &window)
    : QObject(&window),
      m_controller(controller),
      m_timeline(timeline),
      m_listView(listView),
      m_grid(new VQSView(timeline.mainView(), timeline.thumbs())),
      m_fullScreen(new FullScreenView(timeline.mainView(), timeline.thumbs(), &window)),
      m_gridAction(new QAction(tr("Rating Grid"), this)),
      m_fullScreenAction(new QAction(tr("Full Screen"), this)),
      m_slideshowAction(new QAction(tr("Slideshow"), this))
{
    m_grid->setObjectName(QStringLiteral("ratingGrid"));
    m_grid->hide();
    if (auto *splitter = qobject_cast<QSplitter *>(listView.parentWidget()))
        splitter->insertWidget(splitter->indexOf(&listView) + 1, m_grid);
    else
        m_grid->setParent(&window);
    buildRatingActions();
    m_grid->addActions(m_ratingActions);
    m_fullScreen->addActions(m_ratingActions);

    m_gridAction->setObjectName(QStringLiteral("ratingGridAction"));
    m_gridAction->setCheckable(true);
    m_gridAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_G));
    connect(m_gridAction, &QAction::toggled, this, &ViewingActions::setGridOpen);
    m_fullScreenAction->setObjectName(QStringLiteral("fullScreenAction"));
    m_fullScreenAction->setShortcut(QKeySequence(Qt::Key_F11));
    connect(m_fullScreenAction, &QAction::triggered, this, [this] { openFullScreen(nullptr); });
    m_slideshowAction->setObjectName(QStringLiteral("slideshowAction"));
    m_slideshowAction->setShortcut(QKeySequence(Qt::Key_F5));
    connect(m_slideshowAction, &QAction::triggered, this, [this] {
        openFullScreen(nullptr);
        m_fullScreen->toggleSlideshow();
    });
    connectViews();
}

void ViewingActions::buildRatingActions()
{
    struct Rating
    {
        PicRating rating;
        QString text;
        Qt::Key key;
        const char *name;
    };
    const Rating ratings[] = {{PicRating::Keeper, tr("Keeper"), Qt::Key_K, "rateKeeperAction"},
                              {PicRating::Neutral, tr("Neutral"), Qt::Key_N, "rateNeutralAction"},
                              {PicRating::Rejected, tr("Reject"), Qt::Key_X, "rateRejectAction"}};
    for (const Rating &r : ratings) {
        auto *action = new QAction(r.text, this);
        action->setObjectName(QLatin1String(r.name));
        action->setShortcut(QKeySequence(r.key));
        connect(action, &QAction::triggered, this, [this, rating = r.rating] {
            m_controller.ratings().setRating(m_timeline.mainView().selection().selected(), rating);
        });
        m_ratingActions.append(action);
    }
}

void ViewingActions::addTo(QMenuBar &bar)
{
    QMenu *menu = new QMenu(tr("&Rating"), &bar);
    menu->addActions(m_ratingActions);
    menu->addSeparator();
    menu->addActions({m_gridAction, m_fullScreenAction, m_slideshowAction});
    const QList<QAction *> menus = bar.actions();
    bar.insertMenu(menus.isEmpty() ? nullptr : menus.last(), menu);
}

void ViewingActions::connectViews()
{
    connect(&m_controller, &AppController::ratingsChanged, this, [this] {
        m_timeline.controller().filterRelevantChangeWasMade(QStringLiteral("filter_rating"));
        for (MyTimelineView *view : m_timeline.views())
            view->viewport()->update();
        m_grid->refresh();
        m_fullScreen->refresh();
    });
    connect(&m_timeline.controller(), &MyTimelinesController::sourceRebuilt, this, [this] {
        m_grid->sourceChanged();
        if (m_fullScreen->isVisible())
            m_fullScreen->refresh();
    });
    connect(&m_timeline.controller(), &MyTimelinesController::selectionsChanged, m_grid, &VQSView::refresh);
    connect(&m_timeline.mainView(), &MyTimelineView::picSelectionChanged, this, [this](MySinglePic *pic) {
        m_grid->ensureVisible(m_timeline.mainView().strip().indexOf(pic));
        m_grid->refresh();
    });
    connect(m_grid, &VQSView::visibleRangeChanged, this, [this](ThumbRange range) {
        if (m_grid->isVisible())
            m_timeline.setGridRange(range);
    });
    connect(&m_timeline.thumbs(), &MyThumbsQueue::thumbReady, m_grid, &VQSView::thumbReady);
    connect(m_grid, &VQSView::fullScreenRequested, this, &ViewingActions::openFullScreen);
    connect(m_fullScreen, &FullScreenView::closed, this, [this] {
        updateDeferring();
        if (m_grid->isVisible())
            m_grid->setFocus();
    });
}

void ViewingActions::setGridOpen(bool open)
{
    m_gridAction->setChecked(open);
    m_listView.setVisible(!open);
    m_grid->setVisible(open);
    if (open) {
        m_grid->sourceChanged();
        m_grid->setFocus();
        m_timeline.setGridRange(m_grid->visibleRange());
    } else {
        m_timeline.setGridRange(std::nullopt);
    }
    updateDeferring();
}

void ViewingActions::openFullScreen(MySinglePic *pic)
{
    m_fullScreen->open(pic);
    updateDeferring();
}

void ViewingActions::updateDeferring()
{
    const bool looking = m_grid->isVisible() || m_fullScreen->isVisible();
    m_timeline.controller().setDefersRefilter(looking);
    if (!looking && m_timeline.controller().isRefilterPending())
        m_timeline.controller().endFilterTimerNow();
}

} // namespace orv
