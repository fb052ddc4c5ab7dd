#pragma once

#include "places/MyGpxTrack.h"
#include "places/ZoneNames.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace orv {

// One place of the zone search: a city, or a zone of the tz database that no city stands for.
// names holds the place's own name first, then its other names (other spellings and languages).
struct MyTimeZoneCityObject
{
    QStringList names;
    QString timezone;  // a current IANA id the system knows
    int uniqueId = 0;  // the rank: 0 is the most populous place
    GeoCoordinate coordinate;
    QString countryCode;
    QString countryName;
    QString region;    // the first-level division ("Hokkaido"), when known
    qint64 population = 0;

    bool operator==(const MyTimeZoneCityObject &other) const { return uniqueId == other.uniqueId; }
};

// A search hit: the place, and the name it was found by (one of its names, its country, its
// region or its zone).
struct ZonePlaceHit
{
    const MyTimeZoneCityObject *place = nullptr;
    QString matchedName;

    // The place as a line of a list: "Lisbon, Portugal (Europe/Lisbon)"; a city found by another
    // of its names is shown by that name ("Kyiv, Ukraine (Europe/Kyiv)"), one found by its
    // region with it ("Sapporo, Hokkaidō, Japan (Asia/Tokyo)").
    QString label() const;
    // The same in the user's language: "Lissabon, Portugal (Europa / Lissabon)".
    QString label(const ZoneNames &names) const;
};

// The files the places are built from: what Debian's libtimezonemap-data and tzdata install.
struct ZonePlaceSources
{
    QString cities;      // GeoNames cities15000.txt
    QString countries;   // GeoNames countryInfo.txt
    QString regions;     // GeoNames admin1Codes.txt (optional)
    QStringList zoneTables; // tzdata's zone1970.tab and zone.tab: the zones in use today
    QString zoneLinks;   // tzdata.zi, whose "L" lines lead old ids to current ones

    static ZonePlaceSources system();
};

// The places a zone can be found by: every GeoNames city with its zone mapped to the id in use
// today (GeoNames still names some old ones, "Europe/Kiev"), and every listed zone without a
// city. Searches go by prefix over names, countries, regions and zone names, ignoring case and
// accents; hits that match with their accents come first, each group by rank. Built for a
// language, the countries and zones are found by their names in it too ("Deutschland",
// "Europa / Lissabon"), the English ones still. Immutable once built, so any thread may search it.
class ZonePlaces
{
public:
    // Builds from the given files. A missing cities or zone file leaves the set empty, with
    // problem() saying which.
    static ZonePlaces load(const ZonePlaceSources &sources, const ZoneNames &names = {});
    // The system's places for a language, built once on its first use (a few hundred
    // milliseconds; the window asks for them on a worker thread).
    static const ZonePlaces &forLocale(const QLocale &locale);
    // Those of the default locale.
    static const ZonePlaces &shared();

    bool isEmpty() const { return m_places.empty(); }
    int size() const { return int(m_places.size()); }
    const MyTimeZoneCityObject &at(int index) const { return m_places[std::size_t(index)]; }
    const QString &problem() const { return m_problem; }
    const ZoneNames &names() const { return m_names; }

    QList<ZonePlaceHit> search(const QString &text, int limit = 50) const;
    // The place nearest to a coordinate (great-circle distance), or null when the set is empty.
    const MyTimeZoneCityObject *nearest(GeoCoordinate coordinate) const;
    // The id in use today for a zone id: itself when it is listed, else where the tz database's
    // links lead it. Empty when the system knows neither.
    QString currentZoneId(const QString &id) const;

    // The form names are compared in: case-folded, accents and marks gone, as UTF-8.
    static std::string searchKey(const QString &text);

private:
    struct Key
    {
        std::string folded;
        int place = 0;
        int text = 0; // into m_texts: the name as written
        bool operator<(const Key &other) const { return folded < other.folded; }
    };
    void addKey(const QString &text, int place);
    void addPlace(MyTimeZoneCityObject &&place, const QStringList &extraNames);

    std::vector<MyTimeZoneCityObject> m_places;
    std::vector<Key> m_keys;
    QStringList m_texts;
    QHash<QString, QString> m_links; // old id -> its target
    QSet<QString> m_listed;          // zone ids of the zone tables
    QSet<QString> m_available;       // zone ids the system knows
    QString m_problem;
    ZoneNames m_names;
};

} // namespace orv
