#pragma once

#include <QElapsedTimer>

#include <algorithm>
#include <functional>
#include <vector>

/// Time and its middle, the same way in every benchmark.
namespace Measure {

inline double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Wall time of some work.
inline double secondsOf(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e9;
}

} // namespace Measure
