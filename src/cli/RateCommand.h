#pragma once

#include <QStringList>

namespace orv {

// orvelle-cli rate --keeper|--neutral|--reject [--dry-run] [--json] [--pref KEY=VALUE]... PATH...:
// every item takes the rating through the owner of changes, and the save writes it as xmp:Rating
// (5 keeper, -1 reject, 0 a neutral item whose file said keeper or reject), with
// writeRatingsToXMPOnSave on for the run.
class RateCommand
{
public:
    static int run(const QStringList &givenArguments);
};

} // namespace orv
