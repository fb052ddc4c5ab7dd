#pragma once

#include <QStringList>
#include <optional>

namespace orv {

// orvelle-cli shift --by OFFSET [--dry-run] [--json] [--pref KEY=VALUE]... PATH...
class ShiftCommand
{
public:
    static int run(const QStringList &arguments);

    // OFFSET is [+-][Nd]H:MM[:SS]: a sign, optional whole days with "d", hours, two-digit
    // minutes and optional two-digit seconds; "-0:30" is thirty minutes back. Seconds, signed;
    // nothing for any other text.
    static std::optional<double> parseOffset(const QString &text);
};

} // namespace orv
