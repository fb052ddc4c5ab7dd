#pragma once

#include "time/TimeZone.h"

namespace orv::test {

// A zone of the system's tz database by its IANA name; throws when the database lacks it, so a
// test never runs silently in the wrong zone.
TimeZone zone(const char *name);

} // namespace orv::test
