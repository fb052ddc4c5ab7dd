#include "ui/TimelinePane.h"

#include "core/Preferences.h"
#include "core/MySinglePic.h"
#include "folders/FolderPalette.h"
#include "folders/MySingleFolder.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"

#include <QActionGroup>
#include <QCborArray>
#include <QCborMap>
#include <QMenu>
#include <QSplitter>
#include <QVBoxLayout>

namespace orv {

namespace {

// A stored template's predicate as one text: its subpredicates joined by its compound.
QString predicateText(const QCborMap &predicate)
{
    const QString compound = predicate.value(QStringLiteral("compound")).toString(QStringLiteral("AND"));
    QStringList parts;
    for (const QCborValue &sub : predicate.value(QStringLiteral("subpredicates")).toArray())
        parts.append(QStringLiteral("(%1)").arg(sub.isMap() ? predicateText(sub.toMap()) : sub.toString()));
    return parts.join(QStringLiteral(" %1 ").arg(compound));
}

bool preference(const Preferences &prefs, const QString &key, bool fallback)
{
    return prefs.hasValueForKey(key) ? prefs.boolForKey(key) : fallback;
}

constexpr int thumbsDelayMs = 50;
constexpr int minimumStripHeight = 120;

} // namespace

TimelinePane::TimelinePane(Preferences &prefs, QWidget *parent)
    : QWidget(parent),
      m_prefs(prefs),
      m_controller(new MyTimelinesController(this)),
      m_thumbs(new MyThumbsQueue(this)),
      m_splitter(new QSplitter(Qt::Vertical, this)),
      m_filterMenu(new QMenu(tr("Fi&lter"), this)),
      m_stripsMenu(new QMenu(tr("&Strips"), this))
{
    MyThumbsQueue::Settings settings;
    settings.side = cachedThumbSide(int(prefs.integerForKey(QStringLiteral("cachedThumbSizeMode"))), settings.side);
    settings.autoBGThumbGeneration = preference(prefs, QStringLiteral("autoBGThumbGeneration"), true);
    settings.autoThumbMode = int(prefs.integerForKey(QStringLiteral("autoThumbMode")));
    settings.autoThumbModeMovies = int(prefs.integerForKey(QStringLiteral("autoThumbModeMovies")));
    m_thumbs->setSettings(settings);
    m_thumbs->cache().setMaxBytes(ThumbCache::maxBytesFromPreferences(prefs));

    const double height = prefs.doubleForKey(QStringLiteral("timelineHeight_STD"));
    m_options.timelineHeight = height > 0 ? height : m_options.timelineHeight;
    m_options.displayTimelineLabels = preference(prefs, QStringLiteral("displayTimelineLabels"), true);
    m_options.displayTimelineGaps = preference(prefs, QStringLiteral("displayTimelineGaps"), true);
    m_options.extraTLsScrollArea = preference(prefs, QStringLiteral("extraTLsScrollArea"), true);
    m_mainView = addView(m_controller->theTimelineView_1());
    m_mainView->setObjectName(QStringLiteral("mainTimeline"));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitter);

    m_thumbsTimer.setSingleShot(true);
    m_thumbsTimer.setInterval(thumbsDelayMs);
    connect(&m_thumbsTimer, &QTimer::timeout, this, &TimelinePane::runThumbs);
    connect(m_controller, &MyTimelinesController::sourceRebuilt, this, [this] {
        for (MyTimelineView *view : std::as_const(m_views))
            view->sourceChanged();
        // At once: the queue must not keep lists whose items may go right after.
        runThumbs();
        Q_EMIT filteredSourceChanged();
    });
    connect(m_controller, &MyTimelinesController::selectionsChanged, this, [this] {
        for (MyTimelineView *view : std::as_const(m_views))
            view->viewport()->update();
    });
    buildFilterMenu();
    buildStripsMenu();
}

MyTimelineView *TimelinePane::addView(TimelineStrip &strip)
{
    auto *view = new MyTimelineView(*m_controller, strip, *m_thumbs, m_splitter);
    const FolderPalette palette = FolderPalette::fromPreferences(m_prefs);
    view->setFolderColors([palette](const MySinglePic &pic) {
        return (pic.spSingleFolder ? palette.colorFor(MySingleFolder::of(pic)->colorIndex) : std::nullopt)
            .value_or(QColor(90, 90, 95));
    });
    m_splitter->addWidget(view);
    m_views.append(view);
    applyOptions();
    connect(view, &MyTimelineView::zoomRequested, this, &TimelinePane::zoom);
    connect(view, &MyTimelineView::visibleRangeChanged, &m_thumbsTimer, qOverload<>(&QTimer::start));
    connect(view, &MyTimelineView::folderChosen, this, &TimelinePane::folderChosen);
    connect(view, &MyTimelineView::filesDropped, this, [this, view](const QMimeData *mime, Qt::KeyboardModifiers keys) {
        Q_EMIT filesDropped(mime, keys, view->strip().isShelf());
    });
    connect(view, &MyTimelineView::picSelectionChanged, this, [this, view](MySinglePic *pic) {
        if (view == m_mainView)
            Q_EMIT picSelected(pic);
        // Shared and exclusive modes change the other strips too.
        for (MyTimelineView *other : std::as_const(m_views))
            other->viewport()->update();
    });
    return view;
}

MyTimelineView *TimelinePane::addTimelineForMode(int splitMode)
{
    TimelineStrip *strip = m_controller->addTimelineForMode(TimelineStrip::SplitMode(splitMode));
    if (!strip)
        return nullptr;
    MyTimelineView *view = addView(*strip);
    for (MyTimelineView *each : std::as_const(m_views))
        each->sourceChanged(); // a second strip changes the sizes of all
    Q_EMIT viewAdded(view);
    return view;
}

void TimelinePane::removeLastTimeline()
{
    if (m_views.size() < 2)
        return;
    delete m_views.takeLast();
    m_controller->removeLastTimeline();
}

void TimelinePane::buildStripsMenu()
{
    QAction *larger = m_stripsMenu->addAction(tr("Larger Thumbnails"), this, [this] { zoom(1); });
    larger->setObjectName(QStringLiteral("largerThumbnailsAction"));
    // Ctrl+= as well: the plus sign needs Shift on many keyboards.
    larger->setShortcuts({QKeySequence::ZoomIn, QKeySequence(Qt::CTRL | Qt::Key_Equal)});
    QAction *smaller = m_stripsMenu->addAction(tr("Smaller Thumbnails"), this, [this] { zoom(-1); });
    smaller->setObjectName(QStringLiteral("smallerThumbnailsAction"));
    smaller->setShortcut(QKeySequence::ZoomOut);
    m_stripsMenu->addSeparator();
    QAction *mirror = m_stripsMenu->addAction(tr("Add Mirror Strip"), this,
                                              [this] { addTimelineForMode(TimelineStrip::MainOrMirror); });
    QAction *shelf = m_stripsMenu->addAction(tr("Add Shelf Strip"), this,
                                             [this] { addTimelineForMode(TimelineStrip::Shelf); });
    QAction *remove = m_stripsMenu->addAction(tr("Remove Last Strip"), this, &TimelinePane::removeLastTimeline);
    connect(m_stripsMenu, &QMenu::aboutToShow, this, [this, mirror, shelf, remove] {
        mirror->setEnabled(m_views.size() < 3);
        shelf->setEnabled(m_views.size() < 3 && !m_controller->isShelfed());
        remove->setEnabled(m_views.size() > 1);
    });
}

TimelinePane::~TimelinePane() = default;

void TimelinePane::buildFilterMenu()
{
    auto *group = new QActionGroup(this);
    m_filterGroup = group;
    QAction *none = m_filterMenu->addAction(tr("No Filter"));
    none->setCheckable(true);
    none->setChecked(true);
    none->setData(0);
    group->addAction(none);
    connect(none, &QAction::triggered, this, [this] { m_controller->didChangePredicate(std::nullopt); });
    m_filterMenu->addSeparator();
    for (const QCborValue &value : m_prefs.archiveForKey(QStringLiteral("filterTemplates")).toArray()) {
        const QCborMap entry = value.toMap();
        const auto predicate = FilterPredicate::parse(predicateText(entry.value(QStringLiteral("predicate")).toMap()));
        if (!predicate)
            continue;
        QAction *action = m_filterMenu->addAction(entry.value(QStringLiteral("name")).toString());
        action->setCheckable(true);
        action->setData(entry.value(QStringLiteral("key")).toString().toInt());
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, p = *predicate] { m_controller->didChangePredicate(p); });
    }
}

int TimelinePane::filterOption() const
{
    const QAction *checked = m_filterGroup->checkedAction();
    return checked ? checked->data().toInt() : 0;
}

void TimelinePane::chooseFilterOption(int option)
{
    for (QAction *action : m_filterGroup->actions())
        if (action->data().toInt() == option && !action->isChecked())
            action->trigger();
}

void TimelinePane::showFolders(const QList<MySingleFolder *> &folders)
{
    if (m_options.folderColorsShown != (folders.size() > 1)) {
        m_options.folderColorsShown = folders.size() > 1;
        applyOptions();
    }
    m_controller->buildNewSource(folders);
}

void TimelinePane::zoom(int steps)
{
    const double height = TimelineGeometry::zoomedTimelineHeight(m_options.timelineHeight, steps);
    if (height == m_options.timelineHeight)
        return;
    m_options.timelineHeight = height;
    m_prefs.setDouble(QStringLiteral("timelineHeight_STD"), height);
    applyOptions();
    // Other sizes want other pixels.
    runThumbs();
}

void TimelinePane::applyOptions()
{
    // The thumbnail size is limited by the strip's height: a strip grows to what its size needs.
    const double needed = TimelineGeometry::mainStripHeightFor(m_options.timelineHeight, m_views.size() > 1);
    for (MyTimelineView *view : std::as_const(m_views)) {
        view->setMinimumHeight(std::max(int(needed), minimumStripHeight));
        view->setOptions(m_options);
    }
}

void TimelinePane::raiseFolders(const QList<MySingleFolder *> &folders)
{
    m_controller->theTimelineView_1().setRaisedFolders(QSet<const MySingleFolder *>(folders.cbegin(), folders.cend()));
    m_mainView->viewport()->update();
}

void TimelinePane::rebuild()
{
    m_controller->buildNewSourceWithNewSelectionOption(MyTimelinesController::NormalRebuild, false);
}

void TimelinePane::selectPic(MySinglePic *pic)
{
    TimelineStrip &strip = m_controller->theTimelineView_1();
    if (strip.picSelection() == pic)
        return;
    m_mainView->selection().setTarget(nullptr);
    strip.setPicSelection(pic);
    m_controller->selectionChangedIn(strip);
    m_mainView->ensureVisible(pic);
    m_mainView->viewport()->update();
}

void TimelinePane::selectPics(const QList<MySinglePic *> &pics, MySinglePic *main)
{
    TimelineStrip &strip = m_controller->theTimelineView_1();
    m_mainView->selection().setTarget(nullptr);
    strip.setMultiSelection(QSet<MySinglePic *>(pics.cbegin(), pics.cend()), main);
    m_controller->selectionChangedIn(strip);
    m_mainView->ensureVisible(main);
    m_mainView->viewport()->update();
}

void TimelinePane::runThumbs()
{
    m_thumbsTimer.stop();
    QList<MyThumbsQueue::StripList> strips;
    if (m_gridRange)
        strips.append({m_mainView->strip().geometrySource(), *m_gridRange});
    for (MyTimelineView *view : std::as_const(m_views))
        strips.append({view->strip().geometrySource(), view->visibleThumbsRange()});
    m_thumbs->runThumbs(strips);
}

void TimelinePane::setGridRange(std::optional<ThumbRange> range)
{
    m_gridRange = range;
    m_thumbsTimer.start();
}

} // namespace orv
