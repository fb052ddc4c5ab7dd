#include "ui/TimelinePane.h"

#include "app/Preferences.h"
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

} // namespace

TimelinePane::TimelinePane(Preferences &prefs, QWidget *parent)
    : QWidget(parent),
      m_prefs(prefs),
      m_controller(new MyTimelinesController(this)),
      m_thumbs(new MyThumbsQueue(this)),
      m_mainView(new MyTimelineView(*m_controller, m_controller->theTimelineView_1(), *m_thumbs, this)),
      m_filterMenu(new QMenu(tr("Fi&lter"), this))
{
    MyThumbsQueue::Settings settings;
    settings.side = cachedThumbSide(int(prefs.integerForKey(QStringLiteral("cachedThumbSizeMode"))), settings.side);
    settings.autoBGThumbGeneration = preference(prefs, QStringLiteral("autoBGThumbGeneration"), true);
    settings.autoThumbMode = int(prefs.integerForKey(QStringLiteral("autoThumbMode")));
    settings.autoThumbModeMovies = int(prefs.integerForKey(QStringLiteral("autoThumbModeMovies")));
    m_thumbs->setSettings(settings);

    TimelineViewOptions options;
    const double height = prefs.doubleForKey(QStringLiteral("timelineHeight_STD"));
    options.timelineHeight = height > 0 ? height : options.timelineHeight;
    options.displayTimelineLabels = preference(prefs, QStringLiteral("displayTimelineLabels"), true);
    options.displayTimelineGaps = preference(prefs, QStringLiteral("displayTimelineGaps"), true);
    options.extraTLsScrollArea = preference(prefs, QStringLiteral("extraTLsScrollArea"), true);
    m_mainView->setOptions(options);
    const FolderPalette palette = FolderPalette::fromPreferences(prefs);
    m_mainView->setFolderColors([palette](const MySinglePic &pic) {
        return (pic.spSingleFolder ? palette.colorFor(pic.spSingleFolder->colorIndex) : std::nullopt)
            .value_or(QColor(90, 90, 95));
    });
    m_mainView->setObjectName(QStringLiteral("mainTimeline"));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_mainView);

    m_thumbsTimer.setSingleShot(true);
    m_thumbsTimer.setInterval(thumbsDelayMs);
    connect(&m_thumbsTimer, &QTimer::timeout, this, &TimelinePane::runThumbs);
    connect(m_mainView, &MyTimelineView::visibleRangeChanged, &m_thumbsTimer, qOverload<>(&QTimer::start));
    connect(m_mainView, &MyTimelineView::picSelectionChanged, this, &TimelinePane::picSelected);
    connect(m_controller, &MyTimelinesController::sourceRebuilt, this, [this] {
        m_mainView->sourceChanged();
        // At once: the queue must not keep lists whose items may go right after.
        runThumbs();
        Q_EMIT filteredSourceChanged();
    });
    connect(m_controller, &MyTimelinesController::selectionsChanged, m_mainView->viewport(),
            qOverload<>(&QWidget::update));
    buildFilterMenu();
}

TimelinePane::~TimelinePane() = default;

void TimelinePane::buildFilterMenu()
{
    auto *group = new QActionGroup(this);
    QAction *none = m_filterMenu->addAction(tr("No Filter"));
    none->setCheckable(true);
    none->setChecked(true);
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
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, p = *predicate] { m_controller->didChangePredicate(p); });
    }
}

void TimelinePane::showFolders(const QList<MySingleFolder *> &folders)
{
    m_controller->buildNewSource(folders);
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
    strip.setPicSelection(pic);
    m_controller->selectionChangedIn(strip);
    m_mainView->ensureVisible(pic);
    m_mainView->viewport()->update();
}

void TimelinePane::runThumbs()
{
    m_thumbsTimer.stop();
    QList<MyThumbsQueue::StripList> strips;
    strips.append({m_mainView->strip().geometrySource(), m_mainView->visibleThumbsRange()});
    m_thumbs->runThumbs(strips);
}

} // namespace orv
