#include "solver/Rainflow.h"

namespace solver {

void countCycles(std::span<const double> history, Rainflow& counter, std::vector<Cycle>& cycles) {
    cycles.clear();
    const auto add = [&cycles](double from, double to, double count) {
        // Halves first, so that the sum of two large values of one sign stays finite.
        cycles.push_back({std::abs(to - from), 0.5 * from + 0.5 * to, count});
    };
    const auto whole = [&add](double from, double to) { add(from, to, 1.0); };
    const auto half = [&add](double from, double to) { add(from, to, 0.5); };
    counter.clear();
    counter.feed(history, whole);
    counter.finish(whole, half);
}

} // namespace solver
