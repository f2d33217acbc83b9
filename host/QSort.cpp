#include "host/QSort.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace {

bool isBefore(double a, double b) {
    return std::isnan(b) ? !std::isnan(a) : a < b;
}
bool isBefore(std::int32_t a, std::int32_t b) {
    return a < b;
}

template <class T>
void arrange(std::span<T> values, const std::vector<std::size_t>& order) {
    const std::vector<T> before(values.begin(), values.end());
    for (std::size_t i = 0; i < order.size(); ++i)
        values[i] = before[order[i]];
}

template <class Number>
int sortNumbers(std::span<Number> values, std::span<std::int32_t> companions) {
    if (companions.empty()) {
        std::ranges::sort(values, [](Number a, Number b) { return isBefore(a, b); });
        return 1;
    }
    if (companions.size() != values.size()) return 0;
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order,
                             [&](std::size_t a, std::size_t b) { return isBefore(values[a], values[b]); });
    arrange(values, order);
    arrange(companions, order);
    return 1;
}

} // namespace

int CQSort::QSortDbl(std::span<double> values, std::span<std::int32_t> companions) {
    return sortNumbers(values, companions);
}

int CQSort::QSortLong(std::span<std::int32_t> values, std::span<std::int32_t> companions) {
    return sortNumbers(values, companions);
}
