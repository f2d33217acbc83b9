#include "module/stability/SafetyRate.h"

namespace stability {

void safetyRates(const Strength& strength, RateMode mode, std::span<const double> s1,
                 std::span<const double> s2, std::span<double> rates) {
    const StrengthLine line(strength);
    if (mode == RateMode::FactorOfSafety)
        for (std::size_t i = 0; i < rates.size(); ++i)
            rates[i] = factorOfSafety(line, s1[i], s2[i]);
    else
        for (std::size_t i = 0; i < rates.size(); ++i)
            rates[i] = stressRatio(line, s1[i], s2[i]);
}

} // namespace stability
