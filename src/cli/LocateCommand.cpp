#include "cli/LocateCommand.h"

#include "app/FileTagRequests.h"
#include "core/Preferences.h"
#include "cli/DateSaveRun.h"
#include "cli/PathImport.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "places/ZonePlaces.h"

#include <QTextStream>

#include <cmath>

namespace orv {

namespace {

struct Options : DateSaveRun::Options
{
    double latitude = 0.0;
    double longitude = 0.0;
    double altitude = MySinglePic::notSetAccuracy;
    double accuracy = MySinglePic::notSetAccuracy;
};

// "48.8583,2.2945" or "48.8583,2.2945,35": degrees north and east, metres above sea level.
QString takePlace(Options &options, const QString &value)
{
    const QStringList parts = value.split(QLatin1Char(','));
    bool ok = parts.size() == 2 || parts.size() == 3;
    const auto read = [&](qsizetype i) {
        bool good = false;
        const double number = parts[i].trimmed().toDouble(&good);
        ok = ok && good;
        return number;
    };
    if (ok) {
        options.latitude = read(0);
        options.longitude = read(1);
        if (parts.size() == 3)
            options.altitude = read(2);
    }
    ok = ok && std::abs(options.latitude) <= 90.0 && std::abs(options.longitude) <= 180.0;
    return ok ? QString()
              : QLatin1String("'") + value +
                    QLatin1String("' is no place; write LAT,LON[,ALT] in degrees and metres, "
                                  "e.g. 48.8583,2.2945 or -33.86,151.21,12");
}

QString takeValue(Options &options, const QString &option, const QString &value)
{
    if (option == QLatin1String("--at"))
        return takePlace(options, value);
    bool ok = false;
    options.accuracy = value.toDouble(&ok);
    return ok && options.accuracy >= 0.0
               ? QString()
               : QLatin1String("'") + value + QLatin1String("' is no accuracy in metres");
}

// "--place NAME" becomes "--at LAT,LON" of the search's first place, which is said on stderr.
QString resolvePlaces(QStringList &arguments, QTextStream &err)
{
    for (qsizetype i = 0; i + 1 < arguments.size(); ++i) {
        if (arguments[i] != QLatin1String("--place"))
            continue;
        const ZonePlaces &places = ZonePlaces::shared();
        if (places.isEmpty())
            return places.problem();
        const QList<ZonePlaceHit> hits = places.search(arguments[i + 1], 1);
        if (hits.isEmpty())
            return QLatin1String("no place is called '") + arguments[i + 1] +
                   QLatin1String("'; 'orvelle-cli places TEXT' lists the names it knows");
        const GeoCoordinate at = hits[0].place->coordinate;
        const QString coordinates = QString::number(at.latitude, 'f', 5) + QLatin1Char(',') + QString::number(at.longitude, 'f', 5);
        err << "orvelle-cli locate: --place " << arguments[i + 1] << ": " << hits[0].label() << " at " << coordinates << "\n";
        arguments[i] = QStringLiteral("--at");
        arguments[i + 1] = coordinates;
    }
    return {};
}

} // namespace

int LocateCommand::run(const QStringList &givenArguments)
{
    QTextStream err(stderr);
    Options options;
    QStringList arguments = givenArguments;
    QString problem = resolvePlaces(arguments, err);
    if (problem.isEmpty())
        problem = DateSaveRun::parseArguments(
            arguments, {QStringLiteral("--at"), QStringLiteral("--accuracy")}, QStringLiteral("LAT,LON[,ALT]"),
            [&options](const QString &option, const QString &value) { return takeValue(options, option, value); },
            options);
    if (!problem.isEmpty()) {
        err << "orvelle-cli locate: " << problem << "\n"
            << "Usage: orvelle-cli locate --at LAT,LON[,ALT] | --place NAME [--accuracy M] [--dry-run] [--json] "
               "[--pref KEY=VALUE]... PATH...\n";
        return 2;
    }

    return DateSaveRun::run(options, [&options](PathImport &imported, Preferences &, QTextStream &) {
        for (MySingleFolder *folder : imported.folders())
            FileTagRequests::setUserLocation(folder->sfPicDetails_fullArray, options.latitude,
                                             options.longitude, options.altitude, options.accuracy);
        return DateSaveRun::ChangeOutcome{};
    });
}

} // namespace orv
