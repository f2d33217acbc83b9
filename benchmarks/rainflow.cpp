// Rainflow counting beside a bare loop of the textbook's four-point rule, on the same random turning points
// in the same run: one long record, and many short ones.

#include "solver/Rainflow.h"

#include "benchmarks/Stopwatch.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <span>
#include <vector>

namespace {

constexpr std::size_t kPoints = 10'000'000;
constexpr std::size_t kShort = 100;
constexpr int kRuns = 5;

/// Peaks and valleys in turn, uniform in (0, 1) and (-1, 0) (splitmix64, S. Vigna).
std::vector<double> randomTurningPoints(std::size_t count) {
    std::vector<double> points(count);
    std::uint64_t state = 1;
    double sign = 1;
    for (double& point : points) {
        std::uint64_t z = state += 0x9E3779B97F4A7C15u;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
        z = (z ^ z >> 27) * 0x94D049BB133111EBu;
        point = sign * (static_cast<double>((z ^ z >> 31) >> 11) + 1) * 0x1p-53;
        sign = -sign;
    }
    return points;
}

/// The sum of what was counted, so that no work can be left out: ranges of whole cycles, halves of the
/// residue's.
struct Sum {
    double cycles = 0;
    double ranges = 0;
};

/// Four points, their three ranges, a vector as stack: what one writes down from the rule. Every value is a
/// turning point.
Sum textbook(std::span<const double> points, std::vector<double>& stack) {
    Sum sum;
    stack.clear();
    for (const double point : points) {
        stack.push_back(point);
        while (stack.size() >= 4) {
            const std::size_t n = stack.size();
            const double before = std::abs(stack[n - 3] - stack[n - 4]);
            const double inner = std::abs(stack[n - 2] - stack[n - 3]);
            const double after = std::abs(stack[n - 1] - stack[n - 2]);
            if (inner > before || inner > after) break;
            sum.cycles += 1;
            sum.ranges += inner;
            stack[n - 3] = stack[n - 1];
            stack.resize(n - 2);
        }
    }
    for (std::size_t i = 1; i < stack.size(); ++i) {
        sum.cycles += 0.5;
        sum.ranges += 0.5 * std::abs(stack[i] - stack[i - 1]);
    }
    return sum;
}

Sum library(std::span<const double> points, solver::Rainflow& counter) {
    Sum sum;
    const auto whole = [&sum](double from, double to) {
        sum.cycles += 1;
        sum.ranges += std::abs(to - from);
    };
    const auto half = [&sum](double from, double to) {
        sum.cycles += 0.5;
        sum.ranges += 0.5 * std::abs(to - from);
    };
    counter.feed(points, whole);
    counter.finish(whole, half);
    return sum;
}

double bestSeconds(const std::function<Sum()>& work, Sum& sum) {
    return fastest(kRuns, [&] { sum = work(); });
}

/// Both ways on records of one length; false when they count differently.
bool measure(const char* name, std::span<const double> points, std::size_t recordLength) {
    const auto overRecords = [&](const auto& count) {
        Sum total;
        for (std::size_t at = 0; at < points.size(); at += recordLength) {
            const Sum sum = count(points.subspan(at, recordLength));
            total.cycles += sum.cycles;
            total.ranges += sum.ranges;
        }
        return total;
    };
    std::vector<double> stack;
    solver::Rainflow counter;
    std::vector<solver::Cycle> cycles;
    Sum bare, ours, listed;
    const double bareSeconds =
        bestSeconds([&] { return overRecords([&](auto record) { return textbook(record, stack); }); }, bare);
    const double ourSeconds =
        bestSeconds([&] { return overRecords([&](auto record) { return library(record, counter); }); }, ours);
    const double listSeconds = bestSeconds(
        [&] {
            return overRecords([&](auto record) {
                solver::countCycles(record, counter, cycles);
                return Sum{static_cast<double>(cycles.size()), cycles.back().range};
            });
        },
        listed);
    const double millions = static_cast<double>(points.size()) / 1e6;
    std::printf(
        "%-24s %6.1f million turning points/s, textbook loop %6.1f, ratio %.2f; as a list of cycles %6.1f\n",
        name, millions / ourSeconds, millions / bareSeconds, bareSeconds / ourSeconds,
        millions / listSeconds);
    return ours.cycles == bare.cycles && std::abs(ours.ranges - bare.ranges) < 1e-9 * bare.ranges;
}

} // namespace

int main() {
    const auto points = randomTurningPoints(kPoints);
    const bool same =
        measure("one record", points, points.size()) && measure("records of 100", points, kShort);
    if (!same) std::puts("the two ways count differently");
    return same ? 0 : 1;
}
