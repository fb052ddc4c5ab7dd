#pragma once

#include <QStringList>

namespace orv {

// orvelle-cli align --by gaps|minimize|filename|reverse|reverse-intervals|copy:SLOT [--main PATH]
//                   [--dry-run] [--json] [--pref KEY=VALUE]... PATH...
// The selection is every item of the paths, in time order; the folders change to single mode.
class AlignCommand
{
public:
    static int run(const QStringList &arguments);
};

} // namespace orv
