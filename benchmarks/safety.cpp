// Local safety of a million stress states beside a bare loop over the same arithmetic with the tangent
// hoisted, in the same run.

#include "benchmarks/Stopwatch.h"
#include "module/stability/SafetyRate.h"

#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

namespace {

constexpr std::size_t kStates = 1'000'000;
constexpr int kRuns = 9;

/// What one writes down from the rule, the tangent aside.
void bareLoop(double c, double slope, const std::vector<double>& s1, const std::vector<double>& s2,
              std::vector<double>& rates) {
    for (std::size_t i = 0; i < rates.size(); ++i) {
        const double p = 0.5 * (s1[i] + s2[i]);
        const double q = 0.5 * std::abs(s1[i] - s2[i]);
        const double d = c / slope - p;
        const double k = std::abs(p * slope - c) / std::sqrt(slope * slope + 1.0);
        if (d < 0)
            rates[i] = 0;
        else if (q < 2.2e-12)
            rates[i] = -1;
        else if (d <= 0)
            rates[i] = -2;
        else
            rates[i] = std::min(d, k) / q;
    }
}

} // namespace

int main() {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> stress(-300, 10);
    std::vector<double> s1(kStates), s2(kStates), bare(kStates), rates(kStates);
    for (std::size_t i = 0; i < kStates; ++i) {
        s1[i] = stress(random);
        s2[i] = stress(random);
    }
    const stability::Strength soil{12, 25, false, 0};
    const double slope = stability::StrengthLine(soil).slope;
    const double limit = fastest(kRuns, [&] { bareLoop(soil.cohesion, slope, s1, s2, bare); });
    for (const auto mode : {stability::RateMode::FactorOfSafety, stability::RateMode::StressRatio}) {
        const double time = fastest(kRuns, [&] { stability::safetyRates(soil, mode, s1, s2, rates); });
        std::printf("%-17s %7.2f ns a state   %.2f x the bare loop (limit 1.5)\n",
                    mode == stability::RateMode::StressRatio ? "stress ratio" : "factor of safety",
                    time / kStates * 1e9, time / limit);
    }
    return 0;
}
