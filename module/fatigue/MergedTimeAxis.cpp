#include "module/fatigue/MergedTimeAxis.h"

#include <algorithm>
#include <cmath>

namespace fatigue {

std::vector<double> mergedTimeAxis(std::vector<double> times) {
    // Times that are not numbers go last, so that the order is one whatever the functions hold.
    std::ranges::stable_sort(times,
                             [](double a, double b) { return std::isnan(b) ? !std::isnan(a) : a < b; });
    std::vector<double> axis;
    for (const double time : times)
        if (axis.empty() || !(time - axis.back() < kTimeTolerance)) axis.push_back(time);
    return axis;
}

} // namespace fatigue
