#include "cli/LocateCommand.h"

#include "app/FileTagRequests.h"
#include "core/Preferences.h"
#include "cli/DateSaveRun.h"
#include "cli/PathImport.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

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

} // namespace

int LocateCommand::run(const QStringList &arguments)
{
    QTextStream err(stderr);
    Options options;
    const QString problem = DateSaveRun::parseArguments(
        arguments, {QStringLiteral("--at"), QStringLiteral("--accuracy")},
        QStringLiteral("LAT,LON[,ALT]"),
        [&options](const QString &option, const QString &value) {
            return takeValue(options, option, value);
        },
        options);
    if (!problem.isEmpty()) {
        err << "orvelle-cli locate: " << problem << "\n"
            << "Usage: orvelle-cli locate --at LAT,LON[,ALT] [--accuracy M] [--dry-run] [--json] "
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
