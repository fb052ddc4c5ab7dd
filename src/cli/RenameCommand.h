#pragma once

#include <QStringList>

namespace orv {

// orvelle-cli rename --template TEXT [--text TEXT]... [--start N] [--dry-run] [--json] PATH...
class RenameCommand
{
public:
    static int run(const QStringList &arguments);
};

} // namespace orv
