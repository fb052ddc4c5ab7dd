#include "support/Zones.h"

#include <stdexcept>
#include <string>

namespace orv::test {

TimeZone zone(const char *name)
{
    const std::optional<TimeZone> found = TimeZone::fromName(QString::fromLatin1(name));
    if (!found)
        throw std::runtime_error(std::string("time zone missing from the tz database: ") + name);
    return *found;
}

} // namespace orv::test
