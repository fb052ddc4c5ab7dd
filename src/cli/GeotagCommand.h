#pragma once

#include <QStringList>

namespace orv {

// orvelle-cli geotag --gpx FILE [--gpx FILE]... [--offset ±H:MM:SS] [--dry-run] [--json]
// [--pref KEY=VALUE]... PATH...: the files' folders link the tracks of the GPX files, every item
// without a place of its own takes the place of the tracks at its date, and the save writes it
// as locate does. Each item says how its date met the tracks.
class GeotagCommand
{
public:
    static int run(const QStringList &arguments);
};

} // namespace orv
