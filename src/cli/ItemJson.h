#pragma once

#include "time/Instant.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <array>
#include <optional>
#include <string>
#include <utility>

namespace orv {

class MySinglePic;

// The scripting contract of orvelle-cli: keys and value forms stay stable, new keys may be
// added. Dates are ISO 8601 in UTC with a "Z", fractions only when present; the sentinels are
// "distantPast" and "distantFuture"; absent values are null.
class ItemJson
{
public:
    // Appends the item as one compact JSON object.
    static void writePic(const MySinglePic &pic, std::string &out);
    // dstDivergenceState, dstAmbiguityAtImportState (bits 1 creation, 2 digitized,
    // 4 modification) and majorDateDifferenceType (1 an offset stamp disagrees with the zone,
    // 2 and 4 the group's dates).
    static std::array<std::pair<const char *, qint64>, 3> daylightSaving(const MySinglePic &pic);
    static void insertDaylightSaving(QJsonObject &object, const MySinglePic &pic);
    static QJsonValue date(const OptionalDate &date);
    // Nothing for no date.
    static std::optional<QByteArray> dateText(const OptionalDate &date);

};

} // namespace orv
