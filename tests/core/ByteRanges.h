#pragma once

#include "support/SaveFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace orv::test {

struct StampSpan
{
    qint64 begin;
    qint64 length;
};

// Names the first byte that changed outside the ranges, so a stray write is found at once.
inline ::testing::AssertionResult onlyRangesDiffer(const QByteArray &before,
                                                   const QByteArray &after,
                                                   const std::vector<StampSpan> &ranges)
{
    if (before.size() != after.size())
        return ::testing::AssertionFailure()
               << "length " << before.size() << " became " << after.size();
    for (const qint64 offset : differingOffsets(before, after)) {
        if (std::none_of(ranges.begin(), ranges.end(), [offset](const StampSpan &r) {
                return offset >= r.begin && offset < r.begin + r.length;
            }))
            return ::testing::AssertionFailure() << "byte " << offset << " changed outside them";
    }
    return ::testing::AssertionSuccess();
}

} // namespace orv::test
