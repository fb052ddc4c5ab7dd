#pragma once

// What the window benchmarks share: the median of their timings, and an offscreen window unless
// the caller asked for a platform.

#include <QByteArray>
#include <QtGlobal>

#include <algorithm>
#include <vector>

namespace orv::bench {

inline double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + long(values.size() / 2), values.end());
    return values[values.size() / 2];
}

// Called before the QApplication is made.
inline void offscreenUnlessAsked()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", QByteArray("offscreen"));
}

} // namespace orv::bench
