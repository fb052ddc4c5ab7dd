#pragma once

#include <QHash>
#include <QLocale>
#include <QString>

namespace orv {

// Zone and country names in the user's language, from ICU's locale data: "Europe/Lisbon" reads
// "Europa / Lissabon" and "DE" reads "Deutschland" in German. English needs none of it, as the
// zone ids and the city data are English already: there every name is empty and a zone reads as
// its id. Worked out once for every zone and country, so any thread may read it.
class ZoneNames
{
public:
    ZoneNames() = default; // English: nothing localised
    explicit ZoneNames(const QLocale &locale);

    // Whether a language has names of its own here: every one but English.
    static bool isLocalisedFor(const QLocale &locale);
    bool isLocalised() const { return m_localised; }
    // "Deutschland" for "DE"; empty when not localised or unknown.
    QString country(const QString &isoCode) const { return m_countries.value(isoCode); }
    // The city a zone is named after ("Lissabon" for "Europe/Lisbon"); empty when not
    // localised or without one ("Etc/GMT+5").
    QString city(const QString &zoneId) const { return m_cities.value(zoneId); }
    // The zone as the user reads it: its region, and the city in its own language after " / ";
    // the id itself when not localised.
    QString zone(const QString &zoneId) const;

private:
    bool m_localised = false;
    QHash<QString, QString> m_countries;
    QHash<QString, QString> m_cities;
    QHash<QString, QString> m_regions; // first components of zone ids: "Europe" -> "Europa"
};

} // namespace orv
