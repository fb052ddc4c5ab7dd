// The zone search over the system's city and zone data (libtimezonemap-data and tzdata), and over
// small crafted tables where a rule needs exact rows: old zone ids, zones the system does not
// know, accents.

#include "places/ZonePlaces.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

using namespace orv;

namespace {

QString firstZone(const ZonePlaces &places, const QString &text)
{
    const QList<ZonePlaceHit> hits = places.search(text, 1);
    return hits.isEmpty() ? QString() : hits[0].place->timezone;
}

TEST(ZonePlacesSystem, CitiesCountriesRegionsAndZonesFindTheirCurrentZone)
{
    const ZonePlaces &places = ZonePlaces::shared();
    ASSERT_TRUE(places.problem().isEmpty()) << places.problem().toStdString();
    EXPECT_GT(places.size(), 20000);

    const QList<ZonePlaceHit> lisb = places.search(QStringLiteral("Lisb"));
    ASSERT_FALSE(lisb.isEmpty());
    EXPECT_EQ(lisb[0].place->names[0], QStringLiteral("Lisbon"));
    EXPECT_EQ(lisb[0].label(), QStringLiteral("Lisbon, Portugal (Europe/Lisbon)"));
    EXPECT_EQ(firstZone(places, QStringLiteral("Lisbon")), QStringLiteral("Europe/Lisbon"));
    // GeoNames still gives Kiev "Europe/Kiev"; the city is found by its present spelling too.
    const QList<ZonePlaceHit> kyiv = places.search(QStringLiteral("kyiv"), 1);
    ASSERT_EQ(kyiv.size(), 1);
    EXPECT_EQ(kyiv[0].place->timezone, QStringLiteral("Europe/Kyiv"));
    EXPECT_EQ(kyiv[0].label(), QStringLiteral("Kyiv, Ukraine (Europe/Kyiv)"));
    EXPECT_EQ(firstZone(places, QStringLiteral("Yangon")), QStringLiteral("Asia/Yangon")); // "Asia/Rangoon"
    EXPECT_EQ(firstZone(places, QStringLiteral("Nuuk")), QStringLiteral("America/Nuuk"));  // "America/Godthab"
    // Case and accents do not matter; a country and a region lead to their largest city.
    EXPECT_EQ(places.search(QStringLiteral("SÃO PAU"), 1).value(0).place->names[0], QStringLiteral("São Paulo"));
    EXPECT_EQ(places.search(QStringLiteral("sao pau"), 1).value(0).place->names[0], QStringLiteral("São Paulo"));
    EXPECT_EQ(places.search(QStringLiteral("Portugal"), 1).value(0).place->names[0], QStringLiteral("Lisbon"));
    EXPECT_EQ(places.search(QStringLiteral("Hokkaid"), 1).value(0).label(), QStringLiteral("Sapporo, Hokkaidō, Japan (Asia/Tokyo)"));
    EXPECT_EQ(firstZone(places, QStringLiteral("Hokkaido")), QStringLiteral("Asia/Tokyo"));
    EXPECT_EQ(firstZone(places, QStringLiteral("America/Argentina/Sal")), QStringLiteral("America/Argentina/Salta"));
    EXPECT_EQ(firstZone(places, QStringLiteral("antarctica/tro")), QStringLiteral("Antarctica/Troll")); // no city
    EXPECT_TRUE(places.search(QStringLiteral("  ")).isEmpty());
    EXPECT_TRUE(places.search(QStringLiteral("Qqzzxx")).isEmpty());
    EXPECT_EQ(places.search(QStringLiteral("a"), 7).size(), 7);

    // Every place carries a zone the system knows under its present id.
    QSet<QByteArray> known;
    for (const QByteArray &id : QTimeZone::availableTimeZoneIds())
        known.insert(id);
    for (int i = 0; i < places.size(); ++i)
        ASSERT_TRUE(known.contains(places.at(i).timezone.toUtf8())) << places.at(i).timezone.toStdString();
    EXPECT_EQ(places.currentZoneId(QStringLiteral("Europe/Kiev")), QStringLiteral("Europe/Kyiv"));
    EXPECT_EQ(places.currentZoneId(QStringLiteral("Asia/Calcutta")), QStringLiteral("Asia/Kolkata"));
    EXPECT_EQ(places.currentZoneId(QStringLiteral("Europe/Bratislava")), QStringLiteral("Europe/Bratislava")); // listed
    EXPECT_EQ(places.currentZoneId(QStringLiteral("Mars/Olympus")), QString());

    const MyTimeZoneCityObject *lisbon = places.nearest({38.72, -9.14});
    ASSERT_NE(lisbon, nullptr);
    EXPECT_EQ(lisbon->names[0], QStringLiteral("Lisbon"));
    // Across the 180th meridian: Suva (Fiji) from just east of it.
    EXPECT_EQ(places.nearest({-18.14, 178.44})->timezone, QStringLiteral("Pacific/Fiji"));
    EXPECT_EQ(places.nearest({-17.9, -179.99})->countryCode, QStringLiteral("FJ"));
}

TEST(ZonePlacesSystem, InGermanCountriesAndZonesAreFoundByTheirGermanNamesAndTheEnglishOnesStill)
{
    const ZonePlaces &places = ZonePlaces::forLocale(QLocale(QLocale::German, QLocale::Germany));
    ASSERT_TRUE(places.names().isLocalised());
    const QList<ZonePlaceHit> lissabon = places.search(QStringLiteral("Lissabon"), 1);
    ASSERT_EQ(lissabon.size(), 1);
    EXPECT_EQ(lissabon[0].place->timezone, QStringLiteral("Europe/Lisbon"));
    EXPECT_TRUE(lissabon[0].label(places.names()).startsWith(QStringLiteral("Lissabon, Portugal (")));
    EXPECT_TRUE(lissabon[0].label(places.names()).endsWith(QStringLiteral(" / Lissabon)")));
    EXPECT_EQ(lissabon[0].label(), QStringLiteral("Lissabon, Portugal (Europe/Lisbon)"));
    const QList<ZonePlaceHit> germany = places.search(QStringLiteral("deutschl"), 1);
    ASSERT_EQ(germany.size(), 1);
    EXPECT_EQ(germany[0].place->names[0], QStringLiteral("Berlin"));
    EXPECT_TRUE(germany[0].label(places.names()).startsWith(QStringLiteral("Berlin, Deutschland (")));
    EXPECT_EQ(firstZone(places, QStringLiteral("Lisbon")), QStringLiteral("Europe/Lisbon"));
    EXPECT_EQ(firstZone(places, QStringLiteral("Germany")), QStringLiteral("Europe/Berlin"));
    EXPECT_EQ(firstZone(places, QStringLiteral("Europe/Lis")), QStringLiteral("Europe/Lisbon"));
    // ICU files Kyiv under its old id; the German name still leads to the present one.
    EXPECT_EQ(places.names().city(QStringLiteral("Europe/Kyiv")), QStringLiteral("Kiew"));
    EXPECT_EQ(firstZone(places, QStringLiteral("Kiew")), QStringLiteral("Europe/Kyiv"));

    // English needs no names of its own: a zone reads as its id.
    const ZoneNames english(QLocale(QLocale::English, QLocale::UnitedKingdom));
    EXPECT_FALSE(english.isLocalised());
    EXPECT_EQ(english.zone(QStringLiteral("America/Indiana/Knox")), QStringLiteral("America/Indiana/Knox"));
    EXPECT_TRUE(english.country(QStringLiteral("DE")).isEmpty());
    const ZoneNames german(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(german.zone(QStringLiteral("America/Argentina/Buenos_Aires")).section(QStringLiteral(" / "), 1),
              QStringLiteral("Argentina / Buenos Aires"));
    EXPECT_EQ(german.zone(QStringLiteral("America/Indiana/Knox")).section(QStringLiteral(" / "), 1),
              QStringLiteral("Knox, Indiana")) << "the city's name says its state already";
    EXPECT_EQ(german.zone(QStringLiteral("Etc/GMT+5")), QStringLiteral("Etc/GMT+5"));
}

struct CraftedTables
{
    QTemporaryDir dir;
    ZonePlaceSources sources;

    void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    explicit CraftedTables(const QByteArray &cities)
    {
        write(QStringLiteral("cities.txt"), cities);
        write(QStringLiteral("countries.txt"), "#ISO\tISO3\tN\tF\tCountry\nCH\tCHE\t756\tSZ\tSwitzerland\nMM\tMMR\t104\tBM\tMyanmar\n");
        write(QStringLiteral("zone1970.tab"), "# comment\nCH,DE,LI\t+4723+00832\tEurope/Zurich\tSwiss time\n"
                                              "MM,CC\t+1647+09610\tAsia/Yangon\n");
        write(QStringLiteral("tzdata.zi"), "Z Asia/Yangon 6:24:47 - LMT 1880\nL Asia/Yangon Asia/Rangoon\n");
        sources = {dir.filePath(QStringLiteral("cities.txt")), dir.filePath(QStringLiteral("countries.txt")),
                   dir.filePath(QStringLiteral("none.txt")), {dir.filePath(QStringLiteral("zone1970.tab"))},
                   dir.filePath(QStringLiteral("tzdata.zi"))};
    }
};

QByteArray cityRow(const char *name, const char *alternates, const char *country, const char *population, const char *zone)
{
    return QByteArray("1\t") + name + '\t' + name + '\t' + alternates + "\t47.3\t8.5\tP\tPPL\t" + country
        + "\t\t01\t\t\t\t" + population + "\t\t400\t" + zone + "\t2020-01-01\n";
}

TEST(ZonePlacesCrafted, OldIdsAreMappedUnknownZonesDroppedAndAccentExactHitsComeFirst)
{
    CraftedTables tables(cityRow("Zürich", "", "CH", "400000", "Europe/Zurich")
                         + cityRow("Zurzach", "", "CH", "4000", "Europe/Zurich")
                         + cityRow("Yangon", "Rangoon", "MM", "4000000", "Asia/Rangoon")
                         + cityRow("Olympus", "", "MM", "9000000", "Mars/Olympus")
                         + "a row cut short\t1\n");
    const ZonePlaces places = ZonePlaces::load(tables.sources);
    ASSERT_TRUE(places.problem().isEmpty());
    ASSERT_EQ(places.size(), 3);
    EXPECT_EQ(places.at(0).names[0], QStringLiteral("Yangon"));
    EXPECT_EQ(places.at(0).timezone, QStringLiteral("Asia/Yangon"));
    EXPECT_EQ(places.at(0).uniqueId, 0);
    EXPECT_TRUE(places.search(QStringLiteral("Olymp")).isEmpty());

    // "Zur" is Zurzach as typed, Zürich only without its accent: the exact one first, though
    // smaller. "Zür" reverses it.
    QList<ZonePlaceHit> hits = places.search(QStringLiteral("zur"));
    ASSERT_EQ(hits.size(), 2);
    EXPECT_EQ(hits[0].place->names[0], QStringLiteral("Zurzach"));
    EXPECT_EQ(hits[1].place->names[0], QStringLiteral("Zürich"));
    hits = places.search(QStringLiteral("ZÜR"));
    ASSERT_EQ(hits.size(), 2);
    EXPECT_EQ(hits[0].place->names[0], QStringLiteral("Zürich"));
    // A place found by several of its names is listed once; the zone's name finds its largest city.
    EXPECT_EQ(places.search(QStringLiteral("Rangoon")).size(), 1);
    EXPECT_EQ(places.search(QStringLiteral("europe/z")).value(0).place->names[0], QStringLiteral("Zürich"));
    EXPECT_EQ(places.search(QStringLiteral("Switz")).size(), 2);

    // In German the names come from ICU, not from the city table, which has none: the country
    // ("Schweiz") and the zone's city ("Rangun") find their places.
    const ZonePlaces german = ZonePlaces::load(tables.sources, ZoneNames(QLocale(QLocale::German, QLocale::Switzerland)));
    EXPECT_EQ(german.search(QStringLiteral("Schweiz")).size(), 2);
    EXPECT_EQ(german.search(QStringLiteral("rangun")).value(0).place->names[0], QStringLiteral("Yangon"));
    EXPECT_TRUE(places.search(QStringLiteral("Schweiz")).isEmpty());

    ZonePlaceSources missing = tables.sources;
    missing.cities = tables.dir.filePath(QStringLiteral("absent.txt"));
    const ZonePlaces none = ZonePlaces::load(missing);
    EXPECT_TRUE(none.isEmpty());
    EXPECT_TRUE(none.problem().contains(QStringLiteral("libtimezonemap-data")));
    EXPECT_EQ(none.nearest({0, 0}), nullptr);
}

} // namespace
