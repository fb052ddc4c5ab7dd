#include "cli/GeotagCommand.h"

#include "app/AppController.h"
#include "cli/DateSaveRun.h"
#include "cli/PathImport.h"
#include "cli/ShiftCommand.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "places/LOTController.h"

#include <QTextStream>

namespace orv {

namespace {

struct Options : DateSaveRun::Options
{
    QStringList gpxFiles;
    double offset = 0.0;
};

QString takeValue(Options &options, const QString &option, const QString &value)
{
    if (option == QLatin1String("--gpx")) {
        options.gpxFiles << value;
        return {};
    }
    const std::optional<double> offset = ShiftCommand::parseOffset(value);
    if (!offset)
        return QLatin1String("'") + value
               + QLatin1String("' is no offset; write [+-]H:MM:SS, e.g. +0:01:30 when the camera's clock ran "
                               "90 seconds behind the GPS");
    options.offset = *offset;
    return {};
}

DateSaveRun::ItemFacts factsOf(const MySinglePic &pic, const LOTController &tracks)
{
    DateSaveRun::ItemFacts facts;
    QString kind;
    if (!LOTController::hasDateOfItsOwn(pic)) {
        kind = QStringLiteral("noDate");
        facts.text = QStringLiteral("track: no date of its own, never placed by a track");
    } else if (pic.isTrackLinkingPrevented) {
        kind = QStringLiteral("ownPlace");
        facts.text = QStringLiteral("track: keeps its own place");
    } else {
        const TrackMatch match = tracks.matchForPic(pic);
        kind = TrackMatch::kindName(match.kind);
        facts.text = QStringLiteral("track: ") + kind;
        if (match.secondsToNearestPoint != MyGpxTrackPoint::notSet) {
            facts.json.insert(QStringLiteral("secondsToTrackPoint"), match.secondsToNearestPoint);
            facts.text += QStringLiteral(", %1 s from the nearest track point").arg(match.secondsToNearestPoint);
        }
        if (match.track && !match.track->name.isEmpty())
            facts.json.insert(QStringLiteral("trackName"), match.track->name);
    }
    facts.json.insert(QStringLiteral("trackMatch"), kind);
    return facts;
}

} // namespace

int GeotagCommand::run(const QStringList &arguments)
{
    QTextStream err(stderr);
    Options options;
    const QString problem = DateSaveRun::parseArguments(
        arguments, {QStringLiteral("--gpx"), QStringLiteral("--offset")}, QStringLiteral("FILE"),
        [&options](const QString &option, const QString &value) { return takeValue(options, option, value); },
        options);
    if (!problem.isEmpty()) {
        err << "orvelle-cli geotag: " << problem << "\n"
            << "Usage: orvelle-cli geotag --gpx FILE [--gpx FILE]... [--offset ±H:MM:SS] [--dry-run] [--json] "
               "[--pref KEY=VALUE]... PATH...\n";
        return 2;
    }

    return DateSaveRun::run(options, [&options](PathImport &imported, Preferences &, QTextStream &err) {
        AppController &controller = imported.controller();
        LOTController &tracks = controller.tracks();
        const TrackLinks::ImportedTracks gpx =
            controller.trackLinks().importFiles(TrackLinks::readFiles(options.gpxFiles));
        for (const QString &problem : gpx.problems)
            err << "orvelle-cli geotag: " << problem << "\n";
        if (!gpx.anyUsable) {
            err << "orvelle-cli geotag: no usable track in the GPX files; nothing was changed\n";
            return DateSaveRun::ChangeOutcome{1, true};
        }
        // The camera's clock error goes onto the tracks: a photo at t meets the track at t + offset.
        for (const QString &key : gpx.keys)
            tracks.track(key)->timeCorrection = -options.offset;
        controller.trackLinks().linkTracks(imported.folders(), gpx.keys);
        DateSaveRun::ChangeOutcome outcome{gpx.anyFileBroken ? 1 : 0, false};
        for (const MySingleFolder *folder : imported.folders())
            for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
                outcome.itemFacts.insert(pic, factsOf(*pic, tracks));
        return outcome;
    });
}

} // namespace orv
