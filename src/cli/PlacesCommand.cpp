#include "cli/PlacesCommand.h"

#include "places/ZonePlaces.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace orv {

namespace {

QJsonObject placeObject(const ZonePlaceHit &hit)
{
    const MyTimeZoneCityObject &place = *hit.place;
    return {{QStringLiteral("name"), place.names.value(0)},
            {QStringLiteral("matchedName"), hit.matchedName},
            {QStringLiteral("label"), hit.label()},
            {QStringLiteral("countryCode"), place.countryCode},
            {QStringLiteral("country"), place.countryName},
            {QStringLiteral("region"), place.region},
            {QStringLiteral("timeZone"), place.timezone},
            {QStringLiteral("latitude"), place.coordinate.latitude},
            {QStringLiteral("longitude"), place.coordinate.longitude},
            {QStringLiteral("population"), double(place.population)}};
}

} // namespace

int PlacesCommand::run(const QStringList &arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    bool json = false;
    int limit = 20;
    QStringList words;
    QString problem;
    for (qsizetype i = 0; i < arguments.size() && problem.isEmpty(); ++i) {
        if (arguments[i] == QLatin1String("--json")) {
            json = true;
        } else if (arguments[i] == QLatin1String("--limit")) {
            bool ok = i + 1 < arguments.size();
            limit = ok ? arguments[++i].toInt(&ok) : 0;
            if (!ok || limit < 1)
                problem = QStringLiteral("--limit takes a count of at least 1");
        } else if (arguments[i].startsWith(QLatin1String("--"))) {
            problem = QLatin1String("unknown option ") + arguments[i];
        } else {
            words.append(arguments[i]);
        }
    }
    if (problem.isEmpty() && words.join(u' ').trimmed().isEmpty())
        problem = QStringLiteral("name the place to look for");
    if (!problem.isEmpty()) {
        err << "orvelle-cli places: " << problem << "\n"
            << "Usage: orvelle-cli places [--limit N] [--json] TEXT...\n";
        return 2;
    }
    const ZonePlaces &places = ZonePlaces::shared();
    if (places.isEmpty()) {
        err << "orvelle-cli places: " << places.problem() << "\n";
        return 1;
    }
    const QList<ZonePlaceHit> hits = places.search(words.join(u' '), limit);
    if (json) {
        QJsonArray list;
        for (const ZonePlaceHit &hit : hits)
            list.append(placeObject(hit));
        out << QJsonDocument(QJsonObject{{QStringLiteral("query"), words.join(u' ')}, {QStringLiteral("places"), list}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
        return 0;
    }
    for (const ZonePlaceHit &hit : hits)
        out << hit.label() << "\t" << QString::number(hit.place->coordinate.latitude, 'f', 5) << ","
            << QString::number(hit.place->coordinate.longitude, 'f', 5) << "\n";
    return 0;
}

} // namespace orv
