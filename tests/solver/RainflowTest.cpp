#include "solver/Rainflow.h"

#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using Counts = std::map<std::pair<double, double>, double>; ///< (range, mean) -> number of cycles

Counts countsOf(const std::vector<double>& history) {
    solver::Rainflow counter;
    std::vector<solver::Cycle> cycles;
    solver::countCycles(history, counter, cycles);
    Counts counts;
    for (const auto& cycle : cycles)
        counts[{cycle.range, cycle.mean}] += cycle.count;
    return counts;
}

std::map<double, double> countsByRange(const Counts& counts) {
    std::map<double, double> byRange;
    for (const auto& [key, count] : counts)
        byRange[key.first] += count;
    return byRange;
}

/// ASTM E1049-85, 5.4.4, in its own words: three points and a moving starting point. Slow and plain.
std::map<double, double> standardCounts(const std::vector<double>& history) {
    std::vector<double> peaks;
    for (const double value : history) {
        if (!peaks.empty() && value == peaks.back()) continue;
        const std::size_t n = peaks.size();
        if (n >= 2 && (value > peaks[n - 1]) == (peaks[n - 1] > peaks[n - 2])) peaks.pop_back();
        peaks.push_back(value);
    }
    std::map<double, double> counts;
    std::vector<double> read;
    for (const double peak : peaks) {
        read.push_back(peak);
        while (read.size() >= 3) {
            const std::size_t n = read.size();
            const double x = std::abs(read[n - 1] - read[n - 2]), y = std::abs(read[n - 2] - read[n - 3]);
            if (x < y) break;
            if (n == 3) { // y contains the starting point
                counts[y] += 0.5;
                read.erase(read.begin());
            } else {
                counts[y] += 1.0;
                read.erase(read.end() - 3, read.end() - 1);
            }
        }
    }
    for (std::size_t i = 1; i < read.size(); ++i)
        counts[std::abs(read[i] - read[i - 1])] += 0.5;
    return counts;
}

std::vector<double> randomHistory(RandomIntegers& random, std::size_t length, std::size_t levels) {
    std::vector<double> history(length);
    for (double& value : history)
        value = static_cast<double>(random.below(levels));
    return history;
}

double damageSum(const Counts& counts) {
    double sum = 0;
    for (const auto& [key, count] : counts)
        sum += count * std::pow(key.first, 5.0);
    return sum;
}

std::vector<double> repeated(const std::vector<double>& history, int times) {
    std::vector<double> all;
    for (int i = 0; i < times; ++i)
        all.insert(all.end(), history.begin(), history.end());
    return all;
}

struct Case {
    const char* name;
    std::vector<double> history;
    Counts expected;
};

} // namespace

TEST(Rainflow, CountsKnownHistories) {
    const Case cases[] = {
        // ASTM E1049-85, Fig. 6 and its table: ranges 3, 4, 6, 8, 9 with 0.5, 1.5, 0.5, 1.0, 0.5 cycles.
        {"the standard's example",
         {-2, 1, -3, 5, -1, 3, -4, 4, -2},
         {{{3, -0.5}, 0.5},
          {{4, -1}, 0.5},
          {{4, 1}, 1.0},
          {{6, 1}, 0.5},
          {{8, 1}, 0.5},
          {{8, 0}, 0.5},
          {{9, 0.5}, 0.5}}},
        {"nothing", {}, {}},
        {"one value", {5}, {}},
        {"a constant", {5, 5, 5}, {}},
        {"one slope", {0, 1, 1, 4, 10}, {{{10, 5}, 0.5}}},
        {"plateaus on turning points", {0, 0, 4, 4, 4, 0, 0}, {{{4, 2}, 1.0}}},
        {"a dip that touches its start", {0, 4, 2, 4}, {{{4, 2}, 0.5}, {{2, 3}, 1.0}}},
        {"equal cycles", {0, 2, 0, 2, 0}, {{{2, 1}, 2.0}}},
        {"nested",
         {0, 10, 3, 7, 4, 6, 2, 10, 0},
         {{{10, 5}, 1.0}, {{8, 6}, 1.0}, {{4, 5}, 1.0}, {{2, 5}, 1.0}}},
        {"ends inside", {0, 10, 4, 6}, {{{10, 5}, 0.5}, {{6, 7}, 0.5}, {{2, 5}, 0.5}}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(countsOf(c.history), c.expected) << c.name;
}

TEST(Rainflow, AgreesWithTheThreePointTextOfTheStandard) {
    RandomIntegers random;
    for (int round = 0; round < 400; ++round) {
        const auto history = randomHistory(random, 2 + random.below(60), round % 2 == 0 ? 6 : 100000);
        ASSERT_EQ(countsByRange(countsOf(history)), standardCounts(history))
            << random.seedText() << ", round " << round;
    }
}

TEST(Rainflow, PiecesCountLikeTheWhole) {
    RandomIntegers random;
    const auto history = randomHistory(random, 30000, 50);
    const Counts whole = countsOf(history);
    for (const std::size_t most : {1u, 3u, 5000u}) {
        solver::Rainflow counter;
        Counts counts;
        const auto add = [&](double from, double to) {
            counts[{std::abs(to - from), (from + to) / 2}] += 1.0;
        };
        for (std::size_t at = 0; at < history.size();) {
            const std::size_t size = std::min(1 + random.below(most), history.size() - at);
            counter.feed(std::span(history).subspan(at, size), add);
            at += size;
        }
        counter.finish(add, [&](double from, double to) {
            counts[{std::abs(to - from), (from + to) / 2}] += 0.5;
        });
        EXPECT_EQ(counts, whole) << "pieces of up to " << most << "; " << random.seedText();
    }
}

// A history that starts and ends at its largest value leaves no open cycles, so each copy adds the same
// damage. Any history settles into that from its second copy on.
TEST(Rainflow, CopiesAddDamageEvenly) {
    RandomIntegers random;
    for (int round = 0; round < 100; ++round) {
        auto history = randomHistory(random, 3 + random.below(40), 1000);
        const double two = damageSum(countsOf(repeated(history, 2)));
        const double three = damageSum(countsOf(repeated(history, 3)));
        const double four = damageSum(countsOf(repeated(history, 4)));
        EXPECT_NEAR(four - three, three - two, 1e-9 * four) << random.seedText();
        EXPECT_GE(two, 2 * damageSum(countsOf(history)) * (1 - 1e-12)) << random.seedText();

        history.front() = history.back() = 1000;
        const double closed = damageSum(countsOf(history));
        EXPECT_NEAR(damageSum(countsOf(repeated(history, 2))), 2 * closed, 1e-9 * closed)
            << random.seedText();
    }
}

TEST(Rainflow, GateKeepsCyclesAtItsLimit) {
    solver::Rainflow counter;
    std::vector<solver::Cycle> cycles;
    solver::countCycles(std::vector<double>{0, 100, 30, 40, 35, 39.999, 0}, counter, cycles);
    ASSERT_EQ(cycles.size(), 4u);
    solver::dropSmallCycles(cycles, 0.1);
    ASSERT_EQ(cycles.size(), 3u); // 100 up, 10 inside, 100 down
    for (const auto& cycle : cycles)
        EXPECT_GE(cycle.range, 10);
    solver::dropSmallCycles(cycles, 1.0);
    EXPECT_EQ(cycles.size(), 2u);
}
