#include "workbench/session/SafetyField.h"

#include "workbench/session/StressStates.h"

#include <gtest/gtest.h>

#include <cmath>

namespace workbench {
namespace {

TEST(ExtremePrincipals, AreTheRootsOfTheTensor) {
    const struct {
        double tensor[6];
        double major, minor;
    } rows[] = {
        {{5, 5, 5, 0, 0, 0}, 5, 5},
        {{3, -2, 7, 0, 0, 0}, 7, -2},
        {{0, 0, 0, 4, 0, 0}, 4, -4},
        {{0, 0, 0, 1, 1, 1}, 2, -1},                 // eigenvalues 2, -1, -1
        {{0, 0, 0, -1, -1, -1}, 1, -2},              // 1, 1, -2
        {{2, 3, 4, 0, std::sqrt(3) / 2, 0}, 4.5, 2}, // 4.5, 2.5, 2
        {{1e20, 1e20, 1e20, 0, 0, 0}, 1e20, 1e20},
    };
    for (const auto& row : rows) {
        const auto found = extremePrincipals(row.tensor);
        const double scale = std::max(1.0, std::abs(row.major));
        EXPECT_NEAR(found.major / scale, row.major / scale, 1e-7) << row.major;
        EXPECT_NEAR(found.minor / scale, row.minor / scale, 1e-7) << row.minor;
    }
}

TEST(NodeSafety, GoverningStateIsTheLeastSafeOne) {
    using stability::RateMode;
    const auto state = [](double rate, bool hasStrength = true) {
        NodeSafety safety;
        safety.rate = rate;
        safety.hasStrength = hasStrength;
        return safety;
    };
    // From least to most safe.
    const NodeSafety factors[] = {state(0), state(0.5), state(2), state(stability::kUndefinedRate),
                                  state(0, false)};
    const NodeSafety ratios[] = {state(-3), state(1.5), state(0.2), state(0, false)};
    for (std::size_t a = 0; a < std::size(factors); ++a)
        for (std::size_t b = 0; b < std::size(factors); ++b)
            EXPECT_EQ(isLessSafe(factors[a], factors[b], RateMode::FactorOfSafety), a < b) << a << " " << b;
    for (std::size_t a = 0; a < std::size(ratios); ++a)
        for (std::size_t b = 0; b < std::size(ratios); ++b)
            EXPECT_EQ(isLessSafe(ratios[a], ratios[b], RateMode::StressRatio), a < b) << a << " " << b;
    EXPECT_TRUE(isLessSafe(state(stability::kApexRate), state(0.5), RateMode::FactorOfSafety));
    for (const double beyond : {double(NAN), -0.0})
        EXPECT_TRUE(isLessSafe(state(beyond), state(9), RateMode::StressRatio)) << beyond;
    EXPECT_TRUE(isLessSafe(state(NAN), state(0), RateMode::FactorOfSafety));
}

} // namespace
} // namespace workbench
