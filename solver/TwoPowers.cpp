#include "solver/TwoPowers.h"

#include <algorithm>
#include <cmath>

namespace solver {

TwoPowers::TwoPowers(double logA, double p, double logC, double q)
    : logA_(logA)
    , p_(p)
    , logC_(logC)
    , q_(q) {}

double TwoPowers::logValue(double logArgument) const {
    const double u = logA_ + p_ * logArgument, v = logC_ + q_ * logArgument;
    return std::max(u, v) + std::log(1.0 + std::exp(-std::abs(u - v)));
}

double TwoPowers::logArgument(double logValue) const {
    const double alone = (logValue - logA_) / p_, other = (logValue - logC_) / q_;
    double x = p_ < 0 ? std::max(alone, other) : std::min(alone, other);
    // The steps shrink to the square of the one before, measured in how the two powers part.
    const double settled = 1e-7 / std::max(std::abs(p_ - q_), 1e-3);
    constexpr int kMostSteps = 50; // four serve; the limit only guards against rounding that swings
    for (int step = 0; step < kMostSteps; ++step) {
        const double u = logA_ + p_ * x, v = logC_ + q_ * x;
        const double small = std::exp(-std::abs(u - v));
        const double slope = (u > v ? p_ + q_ * small : q_ + p_ * small) / (1.0 + small);
        const double change = (std::max(u, v) + std::log(1.0 + small) - logValue) / slope;
        x -= change;
        if (std::abs(change) <= settled) break;
    }
    return x;
}

} // namespace solver
