#include "core/FolderFacts.h"

#include <cmath>

namespace orv {

bool FolderFacts::isBundlingAllowedForUtcDates(Instant first, Instant second)
{
    const double difference = std::fabs(first.secondsSince(second));
    if (difference <= 300.0)
        return true;
    if (difference > 3900.0)
        return false;
    return isDstExceptionForUtcDate(first, second);
}

// A camera that switched its clock during the early-morning transition stamps the two halves of a
// pair on either side of the hour; only those patterns, and only in the small hours, pass.
bool FolderFacts::isDstExceptionForUtcDate(Instant first, Instant second)
{
    const Instant::Civil a = first.toUtcCivil();
    const Instant::Civil b = second.toUtcCivil();
    if (a.hour > 5)
        return false;
    if (a.hour == b.hour)
        return (a.minute == 59 && b.minute == 0) || (a.minute == 0 && b.minute == 59);
    if (a.hour + 2 == b.hour)
        return a.minute == 59 && b.minute == 0;
    if (a.hour == b.hour + 2)
        return a.minute == 0 && b.minute == 59;
    return false;
}

} // namespace orv
