#pragma once

#include "places/MyGpxTrack.h"

#include <QFutureWatcher>
#include <QLineEdit>

class QCompleter;
class QStandardItemModel;

namespace orv {

class ZonePlaces;

// A field that finds a zone by a place: typing a city, a country, a region or a zone's name lists
// the matching places with their zones; choosing one says its zone and where it lies. The place list is built once
// per process on a worker thread; the field searches as soon as it is there.
class ZonePlaceSearchField : public QLineEdit
{
    Q_OBJECT

public:
    explicit ZonePlaceSearchField(QWidget *parent = nullptr);

    bool isReady() const { return m_places != nullptr; }
    // The places, once built; null before.
    const ZonePlaces *places() const { return m_places; }
    // The hits listed for the present text, one row each, their zone ids in Qt::UserRole and
    // their places' coordinates in coordinateRole.
    QStandardItemModel &hits() const { return *m_hits; }
    QCompleter &completer() const { return *m_completer; }
    static constexpr int coordinateRole = Qt::UserRole + 1;

Q_SIGNALS:
    void ready();
    void zoneChosen(const QString &zoneId);
    void placeChosen(orv::GeoCoordinate at);

private:
    void updateHits();
    void choose(const QModelIndex &hit);

    const ZonePlaces *m_places = nullptr;
    QStandardItemModel *m_hits;
    QCompleter *m_completer;
    QFutureWatcher<const ZonePlaces *> m_loading;
};

} // namespace orv
