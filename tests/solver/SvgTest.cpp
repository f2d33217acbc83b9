#include "solver/SvgAxis.h"
#include "solver/SvgHistory.h"
#include "solver/SvgMatrix.h"
#include "tests/solver/SvgSheet.h"
#include "tests/support/Golden.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <string>
#include <vector>

namespace {

std::string historyOf(const std::vector<double>& values) {
    std::vector<double> positions(values.size());
    std::iota(positions.begin(), positions.end(), 0.0);
    return solver::historyPicture({"Node 1 <&>", "a measure", "step", "stress", positions, values});
}

std::vector<double> scaled(std::vector<double> values, double factor, double shift) {
    for (double& value : values)
        value = value * factor + shift;
    return values;
}

} // namespace

TEST(SvgAxis, HoldsItsRangeInFewRoundSteps) {
    struct Row {
        double low, high;
        int exponent;
        const char *first, *last, *title;
    };
    const Row rows[] = {
        {0, 1, 0, "0.0", "1.0", "stress"},
        {-3, 97, 0, "-20", "100", "stress"},
        {0, 0, 0, "-1.0", "1.0", "stress"},
        {5, 5, 0, "4.5", "5.5", "stress"},
        {-2.5e8, 1.9e8, 6, "-250", "200", "stress × 10⁶"},
        {-1e-5, 2e-4, -6, "-50", "200", "stress × 10⁻⁶"},
        {0, 1.7e308, 306, "0", "180", "stress × 10³⁰⁶"},
        {-1.7e308, 1.7e308, 306, "-200", "200", "stress × 10³⁰⁶"},
        {0, 1e-300, 0, "-1.0", "1.0", "stress"},
        {99999.9999, 100000, 3, "85", "110", "stress × 10³"},
    };
    for (const Row& row : rows) {
        const auto axis = solver::makeAxis(row.low, row.high, 10);
        ASSERT_GE(axis.ticks.size(), 2u);
        EXPECT_LE(axis.ticks.size(), 11u);
        EXPECT_EQ(axis.exponent, row.exponent) << row.low << " to " << row.high;
        EXPECT_EQ(axis.label(0), row.first) << row.low << " to " << row.high;
        EXPECT_EQ(axis.label(axis.ticks.size() - 1), row.last) << row.low << " to " << row.high;
        EXPECT_EQ(axis.title("stress"), row.title);
        EXPECT_GE(axis.fraction(row.low), -1e-6);
        EXPECT_LE(axis.fraction(row.high), 1 + 1e-6);
    }
}

TEST(SvgAxis, SortsIntoGaps) {
    const auto axis = solver::makeAxis(0, 1, 10);
    ASSERT_EQ(axis.ticks.size(), 11u);
    struct Row {
        double value;
        std::size_t gap;
    };
    for (const Row& row : {Row{0, 0}, {0.05, 0}, {0.1, 1}, {0.3, 3}, {0.7, 7}, {0.99, 9}, {1, 9}, {-1, 0}})
        EXPECT_EQ(axis.gap(row.value), row.gap) << row.value;
}

TEST(SvgHistory, TurningPoints) {
    struct Row {
        std::vector<double> values;
        std::vector<std::size_t> points;
    };
    const Row rows[] = {
        {{1}, {}},
        {{2, 2, 2}, {}},
        {{1, 2}, {0, 1}},
        {{1, 1, 2, 3, 3, 1, 1}, {0, 3, 5}},
        {{0, 5, -5, -4, 0}, {0, 1, 2, 4}},
        {{3, 2, 2, 1, 2}, {0, 3, 4}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(solver::turningPoints(row.values), row.points) << testing::PrintToString(row.values);
}

TEST(SvgHistory, ReadableWhateverTheNumbers) {
    RandomIntegers random;
    for (const std::size_t length : {1u, 2u, 7u, 299u, 5000u, 200000u}) {
        std::vector<double> values(length);
        for (double& value : values)
            value = static_cast<double>(random.below(2001)) / 1000 - 1;
        struct Scale {
            double factor, shift;
        };
        for (const Scale& scale : {Scale{1, 0},
                                   {3.7e8, 0},
                                   {1e-5, 0},
                                   {1e8, 1e9},
                                   {1, 1e6},
                                   {0, 77},
                                   {0, 0},
                                   {1.7e308, 0},
                                   {1e-310, 0}}) {
            const std::string svg = historyOf(scaled(values, scale.factor, scale.shift));
            const std::string what = std::to_string(length) + " values x " + std::to_string(scale.factor) +
                                     " + " + std::to_string(scale.shift) + "; " + random.seedText();
            SvgSheet(svg).expectReadable(what);
            EXPECT_LT(svg.size(), 200000u) << what;
            EXPECT_EQ(svg.find("nan"), std::string::npos) << what;
            EXPECT_EQ(svg.find("inf"), std::string::npos) << what;
        }
    }
}

// A lone peak among a hundred thousand values must not fall between the pixels.
TEST(SvgHistory, LongHistoriesKeepTheirPeaks) {
    std::vector<double> values(100000, 0.0);
    values[54321] = 1000;
    const std::string with = historyOf(values);
    values[54321] = 500;
    const std::string half = historyOf(values);
    keepGolden("solver/history.svg", half);
    EXPECT_EQ(SvgSheet(with).elements.at("polyline"), 1);
    EXPECT_NE(with.find(",70.00 "), std::string::npos) << "the peak reaches the top of the plot";
    EXPECT_TRUE(SvgSheet(half).holds("3 turning points"));
}

TEST(SvgMatrix, ReadableAndCountsAddUp) {
    RandomIntegers random;
    for (const std::size_t length : {0u, 1u, 2u, 40u, 5000u})
        for (const double factor : {1.0, 3.3e8, 1e-5, 1e306})
            for (const double spread : {0.0, 0.5}) {
                std::vector<solver::MatrixEntry> entries(length);
                double count = 0;
                for (auto& entry : entries) {
                    entry.amplitude = factor * (1 + static_cast<double>(random.below(99)));
                    entry.mean = factor * spread * (static_cast<double>(random.below(99)) - 40);
                    entry.count = random.below(2) == 0 ? 0.5 : 1;
                    entry.damage = std::pow(entry.amplitude / factor, 10) * 1e-22;
                    count += entry.count;
                }
                const SvgSheet sheet(solver::matrixPicture({"Node 1", "None", "stress", entries}));
                const std::string what =
                    std::to_string(length) + " cycles x " + std::to_string(factor) + "; " + random.seedText();
                if (length == 0) {
                    EXPECT_TRUE(sheet.holds("no cycle was counted"));
                    continue;
                }
                sheet.expectReadable(what);
                // Counts stand in the middle of their bins, above the labels of the ticks.
                double shown = 0;
                for (const auto& box : sheet.texts)
                    if (box.anchor == "middle" && box.bottom < 500)
                        shown += std::strtod(box.text.c_str(), nullptr);
                EXPECT_NEAR(shown, count, 1e-9 * count) << what;
            }
}

TEST(SvgMatrix, ColoursByDamageShare) {
    // 94.9 %, 5 %, 0.1 % and no damage at all, far apart.
    const std::vector<solver::MatrixEntry> entries{
        {100, 0, 0.5, 0.949}, {70, 50, 1, 0.05}, {40, -50, 12, 0.001}, {5, 90, 300, 0}};
    const std::string svg = solver::matrixPicture({"Node 1", "None", "stress", entries});
    keepGolden("solver/matrix.svg", svg);
    struct Row {
        const char* fill;
        int bins;
    };
    for (const Row& row : {Row{"#253494", 1},
                           {"#2c7fb8", 0},
                           {"#41b6c4", 1},
                           {"#a1dab4", 1},
                           {"#ffffcc", 0},
                           {"#eeeeee", 1}}) {
        int found = -1; // one stands in the legend
        for (std::size_t at = 0; (at = svg.find(row.fill, at)) != std::string::npos; ++at)
            ++found;
        EXPECT_EQ(found, row.bins) << row.fill;
    }
}
