#pragma once

#include <QStringList>

namespace orv {

// `orvelle-cli state show PATH`: a kept working set (a quit file or a .orvstate package) as
// JSON, for scripts and tests. Reads only: an unreadable state is named and left where it is.
class StateCommand
{
public:
    static int run(const QStringList &arguments);
};

} // namespace orv
