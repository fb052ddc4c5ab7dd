#pragma once

#include <QStringList>

namespace orv {

// orvelle-cli scan [--json] PATH...
class ScanCommand
{
public:
    static int run(const QStringList &arguments);
};

} // namespace orv
