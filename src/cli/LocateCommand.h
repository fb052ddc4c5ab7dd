#pragma once

#include <QStringList>

namespace orv {

// orvelle-cli locate --at LAT,LON[,ALT] | --place NAME [--accuracy M] [--dry-run] [--json] [--pref KEY=VALUE]...
// PATH...: every item takes the place as the user's own location and the save writes it, in
// place where the file has GPS tags, otherwise through exiftool or into an XMP sidecar.
class LocateCommand
{
public:
    static int run(const QStringList &givenArguments);
};

} // namespace orv
