#include "ui/TrackListView.h"

#include "app/AppController.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"

#include <QApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

QString shownTime(const OptionalDate &date)
{
    if (!date)
        return {};
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(qint64(std::floor(date->secondsSinceEpoch() * 1000.0)));
    return QLocale().toString(local.toLocalTime(), QLocale::ShortFormat);
}

} // namespace

TrackListView::TrackListView(AppController &controller, FoldersOnShow foldersOnShow, ChosenPics chosenPics,
                             QWidget *parent)
    : QWidget(parent), m_controller(controller), m_foldersOnShow(std::move(foldersOnShow)),
      m_chosenPics(std::move(chosenPics)), m_list(new QTreeWidget(this)),
      m_link(new QPushButton(tr("Link"), this)), m_unlink(new QPushButton(tr("Unlink"), this)),
      m_useZone(new QPushButton(tr("Use Track's Zone"), this))
{
    m_list->setObjectName(QStringLiteral("trackList"));
    m_list->setRootIsDecorated(false);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setHeaderLabels({tr("Track"), tr("Start"), tr("End"), tr("Points"), tr("Placed"), tr("Folders"),
                             tr("Zone"), tr("State")});
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_link->setObjectName(QStringLiteral("linkTracksButton"));
    m_link->setToolTip(tr("Link the chosen tracks to the folders on show"));
    m_unlink->setObjectName(QStringLiteral("unlinkTracksButton"));
    m_unlink->setToolTip(tr("The folders on show let go of the chosen tracks"));
    auto *open = new QPushButton(tr("Open Items"), this);
    open->setObjectName(QStringLiteral("openItemsToTracksButton"));
    open->setToolTip(tr("The chosen items take their places from their folders' tracks, a place of their own "
                        "giving way"));
    auto *close = new QPushButton(tr("Close Items"), this);
    close->setObjectName(QStringLiteral("closeItemsToTracksButton"));
    close->setToolTip(tr("The chosen items no longer take places from tracks and get back what they had"));

    m_useZone->setObjectName(QStringLiteral("useTrackZoneButton"));
    m_useZone->setToolTip(tr("The folders on show whose camera wrote no time zone read their dates in the zone "
                             "where the chosen track was recorded"));

    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {m_link, m_unlink, open, close, m_useZone})
        buttons->addWidget(button);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    layout->addLayout(buttons);

    TrackLinks &links = controller.trackLinks();
    connect(m_link, &QPushButton::clicked, this, [this, &links] {
        act([&] { return links.linkTracks(m_foldersOnShow(), chosenKeys()); });
    });
    connect(m_unlink, &QPushButton::clicked, this, [this, &links] {
        act([&] { return links.unlinkTracks(m_foldersOnShow(), chosenKeys()); });
    });
    connect(open, &QPushButton::clicked, this, [this, &links] { act([&] { return links.linkPics(m_chosenPics()); }); });
    connect(close, &QPushButton::clicked, this,
            [this, &links] { act([&] { return links.unlinkPics(m_chosenPics()); }); });
    connect(m_useZone, &QPushButton::clicked, this, [this, &controller] {
        act([&] {
            return controller.dateChanges().changeTimeZones(TrackLinks::trackZoneChanges(m_foldersOnShow(), chosenZone()),
                                                            {});
        });
    });
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &TrackListView::updateButtons);
    // Links and places change by undo steps, and with the folders there are.
    connect(&controller.uManager(), &QUndoStack::indexChanged, this, &TrackListView::refresh);
    MyDroppedFolders &folders = controller.theDataSource();
    connect(&folders, &MyDroppedFolders::folderImported, this, &TrackListView::refresh);
    connect(&folders, &MyDroppedFolders::folderRemoved, this, &TrackListView::refresh);
    refresh();
}

void TrackListView::refresh()
{
    const QStringList chosen = chosenKeys();
    const QList<MySingleFolder *> folders = m_controller.theDataSource().droppedFolders();
    m_list->clear();
    for (const MyGpxTrack *track : m_controller.tracks().activeGpxTracks()) {
        const qsizetype linked = std::count_if(folders.cbegin(), folders.cend(), [track](const MySingleFolder *f) {
            return f->linkedTracksKeys.contains(track->key);
        });
        const QString reason = MyGpxTrackParser::stateReason(track->trackState);
        auto *row = new QTreeWidgetItem(
            m_list, {track->name.isEmpty() ? QFileInfo(track->filePath).fileName() : track->name,
                     shownTime(track->startTime()), shownTime(track->endTime()), QLocale().toString(track->pointCount()),
                     QLocale().toString(TrackLinks::placedBy(folders, {track->key})), QLocale().toString(linked),
                     m_controller.tracks().trackTimeZone(track->key), reason.isEmpty() ? tr("usable") : reason});
        row->setData(NameColumn, Qt::UserRole, track->key);
        row->setToolTip(NameColumn, track->filePath);
        for (const Column column : {PointsColumn, PlacedColumn, FoldersColumn})
            row->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
        row->setSelected(chosen.contains(track->key));
    }
    updateButtons();
}

QStringList TrackListView::chosenKeys() const
{
    QStringList keys;
    for (const QTreeWidgetItem *row : m_list->selectedItems())
        keys << row->data(NameColumn, Qt::UserRole).toString();
    return keys;
}

QString TrackListView::chosenZone() const
{
    const QStringList keys = chosenKeys();
    return keys.size() == 1 ? m_controller.tracks().trackTimeZone(keys.first()) : QString();
}

void TrackListView::updateButtons()
{
    const bool any = !m_list->selectedItems().isEmpty();
    m_link->setEnabled(any);
    m_unlink->setEnabled(any);
    const QString zone = chosenZone();
    m_useZone->setEnabled(!zone.isEmpty() && !TrackLinks::trackZoneChanges(m_foldersOnShow(), zone).isEmpty());
}

void TrackListView::act(const std::function<DateChangeResult()> &change)
{
    if (change() == DateChangeResult::Refused)
        QApplication::beep();
    refresh();
}

} // namespace orv
