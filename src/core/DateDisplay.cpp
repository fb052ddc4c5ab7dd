#include "core/DateDisplay.h"

#include <QCoreApplication>

#include <cmath>

namespace orv {

QString DateDisplay::localDateTime(const OptionalDate &date, const TimeZone &zone)
{
    auto translated = [](const char *text) {
        return QCoreApplication::translate("DateDisplay", text);
    };
    if (!date)
        return translated(QT_TRANSLATE_NOOP("DateDisplay", "no date"));
    // An item stands at the far past when its file has no date the scan could read.
    if (date->isDistantPast())
        return translated(QT_TRANSLATE_NOOP("DateDisplay", "no date"));
    if (date->isDistantFuture())
        return translated(QT_TRANSLATE_NOOP("DateDisplay", "when saved"));
    const Instant::Civil c = zone.localCivil(*date);
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d ", c.year, c.month, c.day, c.hour,
                             c.minute, c.second)
           + zone.abbreviationForDate(*date);
}

QString DateDisplay::offset(double seconds)
{
    const qint64 whole = qint64(std::floor(std::abs(seconds)));
    const qint64 days = whole / 86400;
    const QString clock = QString::asprintf("%02lld:%02lld:%02lld", (whole % 86400) / 3600, (whole % 3600) / 60,
                                            whole % 60);
    const QString sign = seconds < 0 ? QStringLiteral("\u2212") : QStringLiteral("+");
    return days > 0 ? QCoreApplication::translate("DateDisplay", "%1%2 d %3").arg(sign).arg(days).arg(clock)
                    : sign + clock;
}

} // namespace orv
