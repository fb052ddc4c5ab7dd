#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace orv {

// orvelle-cli still --at SECONDS[,SECONDS...] [--chapters] [--format jpg|tif|heic] [--live] [--json] MOVIE...
class StillCommand
{
public:
    static int run(const QStringList &arguments);
    // "1.5,3,10.25": positions of 0 seconds or more; nothing for anything else.
    static std::optional<QList<double>> parsePositions(const QString &text);
};

} // namespace orv
