#include "places/ZonePlaces.h"

#include <QFile>
#include <QMutex>
#include <QRegularExpression>
#include <QTimeZone>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <memory>
#include <numbers>

namespace orv {

namespace {

// Lines of a tab-separated file, comments left out. An unreadable file gives none.
QList<QStringList> readTable(const QString &path, bool *opened = nullptr)
{
    QList<QStringList> rows;
    QFile file(path);
    const bool ok = file.open(QIODevice::ReadOnly);
    if (opened)
        *opened = ok;
    if (!ok)
        return rows;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).chopped(1);
        if (!line.isEmpty() && !line.startsWith(u'#'))
            rows.append(line.split(u'\t'));
    }
    return rows;
}

// ISO 6709 as zone tables write it: "+3843-00908" or "+384300-0090800".
GeoCoordinate zoneTableCoordinate(const QString &text)
{
    const qsizetype split = text.indexOf(QRegularExpression(QStringLiteral("[+-]")), 1);
    auto degrees = [](QStringView part, int degreeDigits) {
        const double sign = part.startsWith(u'-') ? -1.0 : 1.0;
        const QStringView digits = part.mid(1);
        double value = digits.left(degreeDigits).toDouble();
        value += digits.mid(degreeDigits, 2).toDouble() / 60.0;
        if (digits.size() > degreeDigits + 2)
            value += digits.mid(degreeDigits + 2, 2).toDouble() / 3600.0;
        return sign * value;
    };
    if (split < 0)
        return {};
    return {degrees(QStringView(text).left(split), 2), degrees(QStringView(text).mid(split), 3)};
}

double distanceRadians(GeoCoordinate a, GeoCoordinate b)
{
    constexpr double toRadians = std::numbers::pi / 180.0;
    const double dLat = (b.latitude - a.latitude) * toRadians;
    const double dLong = (b.longitude - a.longitude) * toRadians;
    const double h = std::pow(std::sin(dLat / 2), 2)
        + std::cos(a.latitude * toRadians) * std::cos(b.latitude * toRadians) * std::pow(std::sin(dLong / 2), 2);
    return 2 * std::asin(std::sqrt(std::min(1.0, h)));
}

// "America/Argentina/Buenos_Aires" is found as "Buenos Aires".
QString zoneCityName(const QString &zone)
{
    return zone.section(u'/', -1).replace(u'_', u' ');
}

} // namespace

QString ZonePlaceHit::label() const
{
    return label(ZoneNames());
}

QString ZonePlaceHit::label(const ZoneNames &names) const
{
    const bool byOwnName = place->names.contains(matchedName) || matchedName == names.city(place->timezone);
    QString where = byOwnName ? matchedName : place->names.value(0);
    // A place found by its region says so: "Sapporo, Hokkaidō, Japan".
    if (matchedName == place->region && !byOwnName)
        where += QStringLiteral(", ") + place->region;
    const QString localCountry = names.country(place->countryCode);
    if (const QString country = localCountry.isEmpty() ? place->countryName : localCountry; !country.isEmpty())
        where += QStringLiteral(", ") + country;
    return QStringLiteral("%1 (%2)").arg(where, names.zone(place->timezone));
}

ZonePlaceSources ZonePlaceSources::system()
{
    const QString geonames = QStringLiteral("/usr/share/libtimezonemap/ui/");
    const QString zoneinfo = QStringLiteral("/usr/share/zoneinfo/");
    return {geonames + QStringLiteral("cities15000.txt"), geonames + QStringLiteral("countryInfo.txt"),
            geonames + QStringLiteral("admin1Codes.txt"),
            {zoneinfo + QStringLiteral("zone1970.tab"), zoneinfo + QStringLiteral("zone.tab")},
            zoneinfo + QStringLiteral("tzdata.zi")};
}

std::string ZonePlaces::searchKey(const QString &text)
{
    // Most names are plain ASCII, which needs no decomposition.
    if (std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x80; })) {
        std::string ascii = text.toStdString();
        for (char &c : ascii)
            c = char(std::tolower(static_cast<unsigned char>(c)));
        return ascii;
    }
    QString folded;
    folded.reserve(text.size());
    for (const QChar c : text.normalized(QString::NormalizationForm_KD)) {
        if (c.category() == QChar::Mark_NonSpacing || c.category() == QChar::Mark_SpacingCombining
            || c.category() == QChar::Mark_Enclosing)
            continue;
        // Letters that carry their accent inside, which no decomposition takes apart.
        switch (c.unicode()) {
        case u'ø': case u'Ø': folded += u'o'; break;
        case u'ł': case u'Ł': folded += u'l'; break;
        case u'đ': case u'Đ': folded += u'd'; break;
        case u'ı': folded += u'i'; break;
        case u'ß': folded += QStringLiteral("ss"); break;
        case u'æ': case u'Æ': folded += QStringLiteral("ae"); break;
        case u'œ': case u'Œ': folded += QStringLiteral("oe"); break;
        case u'’': folded += u'\''; break;
        default: folded += c;
        }
    }
    return folded.toCaseFolded().toStdString();
}

void ZonePlaces::addKey(const QString &text, int place)
{
    if (text.isEmpty())
        return;
    m_keys.push_back({searchKey(text), place, int(m_texts.size())});
    m_texts.append(text);
}

ZonePlaces ZonePlaces::load(const ZonePlaceSources &sources, const ZoneNames &names)
{
    ZonePlaces set;
    set.m_names = names;
    for (const QByteArray &id : QTimeZone::availableTimeZoneIds())
        set.m_available.insert(QString::fromUtf8(id));

    struct ZoneRow
    {
        GeoCoordinate coordinate;
        QString countryCode;
    };
    QHash<QString, ZoneRow> zoneRows;
    for (const QString &path : sources.zoneTables) {
        for (const QStringList &row : readTable(path)) {
            if (row.size() < 3)
                continue;
            set.m_listed.insert(row[2]);
            if (!zoneRows.contains(row[2]))
                zoneRows.insert(row[2], {zoneTableCoordinate(row[1]), row[0].section(u',', 0, 0)});
        }
    }
    QFile links(sources.zoneLinks);
    if (links.open(QIODevice::ReadOnly)) {
        while (!links.atEnd()) {
            const QList<QByteArray> fields = links.readLine().trimmed().split(' ');
            if (fields.size() == 3 && fields[0] == "L")
                set.m_links.insert(QString::fromUtf8(fields[2]), QString::fromUtf8(fields[1]));
        }
    }

    QHash<QString, QString> countries;
    for (const QStringList &row : readTable(sources.countries))
        if (row.size() > 4)
            countries.insert(row[0], row[4]);
    QHash<QString, QString> regions;
    for (const QStringList &row : readTable(sources.regions))
        if (row.size() > 1)
            regions.insert(row[0], row[1]);

    bool citiesOpened = false;
    const QList<QStringList> cityRows = readTable(sources.cities, &citiesOpened);
    if (!citiesOpened || zoneRows.isEmpty()) {
        set.m_problem = !citiesOpened ? QStringLiteral("The city list %1 cannot be read (package libtimezonemap-data).").arg(sources.cities)
                                      : QStringLiteral("The zone tables %1 cannot be read (package tzdata).").arg(sources.zoneTables.join(u", "));
        return set;
    }
    std::vector<MyTimeZoneCityObject> places;
    std::vector<QStringList> otherNames;
    places.reserve(std::size_t(cityRows.size()) + std::size_t(zoneRows.size()));
    QSet<QString> zonesWithCity;
    for (const QStringList &row : cityRows) {
        if (row.size() < 18)
            continue;
        const QString zone = set.currentZoneId(row[17]);
        bool latOk = false, longOk = false;
        const GeoCoordinate coordinate{row[4].toDouble(&latOk), row[5].toDouble(&longOk)};
        if (zone.isEmpty() || !latOk || !longOk)
            continue;
        MyTimeZoneCityObject place;
        place.names = QStringList{row[1]};
        for (const QString &name : QStringList{row[2]} + row[3].split(u',', Qt::SkipEmptyParts))
            if (!place.names.contains(name))
                place.names.append(name);
        place.timezone = zone;
        place.coordinate = coordinate;
        place.countryCode = row[8];
        place.countryName = countries.value(row[8]);
        place.region = regions.value(row[8] + u'.' + row[10]);
        place.population = row[14].toLongLong();
        zonesWithCity.insert(zone);
        places.push_back(std::move(place));
    }
    // A zone in use with no city of its own ("Antarctica/Troll") is found by its name.
    for (auto zone = zoneRows.cbegin(); zone != zoneRows.cend(); ++zone) {
        if (zonesWithCity.contains(zone.key()) || set.currentZoneId(zone.key()) != zone.key())
            continue;
        MyTimeZoneCityObject place;
        place.names = QStringList{zoneCityName(zone.key())};
        place.timezone = zone.key();
        place.coordinate = zone->coordinate;
        place.countryCode = zone->countryCode;
        place.countryName = countries.value(zone->countryCode);
        places.push_back(std::move(place));
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const auto &a, const auto &b) { return a.population > b.population; });

    set.m_places = std::move(places);
    QSet<QString> zonesKeyed;
    for (int i = 0; i < set.size(); ++i) {
        MyTimeZoneCityObject &place = set.m_places[std::size_t(i)];
        place.uniqueId = i;
        for (const QString &name : place.names)
            set.addKey(name, i);
        set.addKey(place.region, i);
        set.addKey(place.countryName, i);
        set.addKey(names.country(place.countryCode), i);
        // A zone's own name leads to its largest place, in English and in the user's language.
        if (!zonesKeyed.contains(place.timezone)) {
            zonesKeyed.insert(place.timezone);
            set.addKey(place.timezone, i);
            set.addKey(zoneCityName(place.timezone), i);
            if (names.isLocalised()) {
                set.addKey(names.zone(place.timezone), i);
                set.addKey(names.city(place.timezone), i);
            }
        }
    }
    std::stable_sort(set.m_keys.begin(), set.m_keys.end(), [](const Key &a, const Key &b) {
        return std::tie(a.folded, a.place) < std::tie(b.folded, b.place);
    });
    // One key per place and spelling: the first given (its own name before the others) stays.
    set.m_keys.erase(std::unique(set.m_keys.begin(), set.m_keys.end(),
                                 [](const Key &a, const Key &b) { return a.folded == b.folded && a.place == b.place; }),
                     set.m_keys.end());
    return set;
}

const ZonePlaces &ZonePlaces::forLocale(const QLocale &locale)
{
    static QMutex mutex;
    static std::map<QString, std::unique_ptr<const ZonePlaces>> built;
    // Held while a set is built: a second asker of the same language waits for it.
    const QMutexLocker lock(&mutex);
    // English variants share one set: none has names of its own.
    std::unique_ptr<const ZonePlaces> &places = built[ZoneNames::isLocalisedFor(locale) ? locale.name() : QString()];
    if (!places)
        places = std::make_unique<const ZonePlaces>(load(ZonePlaceSources::system(), ZoneNames(locale)));
    return *places;
}

const ZonePlaces &ZonePlaces::shared()
{
    return forLocale(QLocale());
}

QList<ZonePlaceHit> ZonePlaces::search(const QString &text, int limit) const
{
    const QString trimmed = text.trimmed();
    const std::string query = searchKey(trimmed);
    if (query.empty() || limit <= 0)
        return {};
    struct Candidate
    {
        int place;
        int text;
        bool accentsDiffer;
    };
    // best[place] is 1 + the candidate's index; a place found by several names keeps its best.
    std::vector<int> best(m_places.size(), 0);
    std::vector<Candidate> candidates;
    for (auto key = std::lower_bound(m_keys.begin(), m_keys.end(), Key{query, 0, 0});
         key != m_keys.end() && key->folded.compare(0, query.size(), query) == 0; ++key) {
        const bool accentsDiffer = !m_texts[key->text].startsWith(trimmed, Qt::CaseInsensitive);
        int &slot = best[std::size_t(key->place)];
        if (slot == 0) {
            candidates.push_back({key->place, key->text, accentsDiffer});
            slot = int(candidates.size());
        } else {
            // Of a place's names that match, the one written as typed, then its own name before
            // the others.
            Candidate &kept = candidates[std::size_t(slot - 1)];
            if (std::tie(accentsDiffer, key->text) < std::tie(kept.accentsDiffer, kept.text))
                kept = {key->place, key->text, accentsDiffer};
        }
    }
    const auto order = [](const Candidate &a, const Candidate &b) {
        return std::tie(a.accentsDiffer, a.place) < std::tie(b.accentsDiffer, b.place);
    };
    const auto end = candidates.begin() + std::min<std::ptrdiff_t>(limit, std::ssize(candidates));
    std::partial_sort(candidates.begin(), end, candidates.end(), order);
    QList<ZonePlaceHit> hits;
    for (auto c = candidates.begin(); c != end; ++c)
        hits.append({&m_places[std::size_t(c->place)], m_texts[c->text]});
    return hits;
}

const MyTimeZoneCityObject *ZonePlaces::nearest(GeoCoordinate coordinate) const
{
    const MyTimeZoneCityObject *found = nullptr;
    double foundDistance = 0;
    for (const MyTimeZoneCityObject &place : m_places) {
        const double distance = distanceRadians(coordinate, place.coordinate);
        if (!found || distance < foundDistance) {
            found = &place;
            foundDistance = distance;
        }
    }
    return found;
}

QString ZonePlaces::currentZoneId(const QString &id) const
{
    QString current = id;
    // Links lead to zones, but an old table may chain them: a few steps are plenty.
    for (int step = 0; step < 8; ++step) {
        if (m_listed.contains(current) && m_available.contains(current))
            return current;
        const auto link = m_links.constFind(current);
        if (link == m_links.cend())
            break;
        current = *link;
    }
    if (m_available.contains(current))
        return current;
    return m_available.contains(id) ? id : QString();
}

} // namespace orv
