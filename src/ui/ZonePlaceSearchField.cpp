#include "ui/ZonePlaceSearchField.h"

#include "places/ZonePlaces.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QStandardItemModel>
#include <QtConcurrent>

namespace orv {

namespace {

// Built by the first field of a language, shared by all later ones.
QFuture<const ZonePlaces *> placesFor(const QLocale &locale)
{
    return QtConcurrent::run([locale] { return &ZonePlaces::forLocale(locale); });
}

constexpr int listedHits = 30;

} // namespace

ZonePlaceSearchField::ZonePlaceSearchField(QWidget *parent)
    : QLineEdit(parent), m_hits(new QStandardItemModel(this)), m_completer(new QCompleter(m_hits, this))
{
    setPlaceholderText(tr("Loading places…"));
    setClearButtonEnabled(true);
    // The completer only shows the list: the search has chosen and ordered the rows already.
    m_completer->setWidget(this);
    m_completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    m_completer->setMaxVisibleItems(12);
    connect(m_completer, qOverload<const QModelIndex &>(&QCompleter::activated), this, &ZonePlaceSearchField::choose);
    connect(this, &QLineEdit::textEdited, this, &ZonePlaceSearchField::updateHits);
    connect(&m_loading, &QFutureWatcher<const ZonePlaces *>::finished, this, [this] {
        m_places = m_loading.result();
        setPlaceholderText(m_places->isEmpty() ? m_places->problem() : tr("Find a zone by city, country or zone name"));
        updateHits();
        Q_EMIT ready();
    });
    m_loading.setFuture(placesFor(locale()));
}

void ZonePlaceSearchField::updateHits()
{
    m_hits->clear();
    if (!m_places)
        return;
    for (const ZonePlaceHit &hit : m_places->search(text(), listedHits)) {
        auto *row = new QStandardItem(hit.label(m_places->names()));
        row->setData(hit.place->timezone, Qt::UserRole);
        row->setData(QPointF(hit.place->coordinate.latitude, hit.place->coordinate.longitude), coordinateRole);
        m_hits->appendRow(row);
    }
    if (m_hits->rowCount() == 0) {
        m_completer->popup()->hide();
        return;
    }
    m_completer->complete();
    m_completer->popup()->setCurrentIndex(m_hits->index(0, 0));
}

void ZonePlaceSearchField::choose(const QModelIndex &hit)
{
    // The completer hands over an index of its own proxy; its text and data are the row's.
    setText(hit.data().toString());
    Q_EMIT zoneChosen(hit.data(Qt::UserRole).toString());
    const QPointF at = hit.data(coordinateRole).toPointF();
    Q_EMIT placeChosen({at.x(), at.y()});
}

} // namespace orv
