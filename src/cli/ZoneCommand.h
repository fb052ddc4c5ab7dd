#pragma once

#include <QStringList>

namespace orv {

// orvelle-cli zone --source ZONE [--target ZONE] [--dry-run] [--json] [--pref KEY=VALUE]... PATH...
// The stamps are read in the source zone and saved in the target zone (the system's zone when
// none is named), through the same owner and save as the window's time zone correction.
class ZoneCommand
{
public:
    static int run(const QStringList &arguments);
};

} // namespace orv
