#pragma once

#include <QStringList>

namespace orv {

// orvelle-cli places [--limit N] [--json] TEXT...: the places whose name, country, region or zone
// begins with TEXT (case and accents aside), largest first, with their zones and coordinates.
// Reads nothing but the system's city and zone data; changes nothing.
class PlacesCommand
{
public:
    static int run(const QStringList &arguments);
};

} // namespace orv
