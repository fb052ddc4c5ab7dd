#include "core/DateDisplay.h"

#include <QCoreApplication>

namespace orv {

QString DateDisplay::localDateTime(const OptionalDate &date, const TimeZone &zone)
{
    auto tr = [](const char *text) { return QCoreApplication::translate("DateDisplay", text); };
    if (!date)
        return tr("no date");
    // An item stands at the far past when its file has no date the scan could read.
    if (date->isDistantPast())
        return tr("no date");
    if (date->isDistantFuture())
        return tr("when saved");
    const Instant::Civil c = zone.localCivil(*date);
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d ", c.year, c.month, c.day, c.hour,
                             c.minute, c.second)
           + zone.abbreviationForDate(*date);
}

} // namespace orv
