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
    return std::max(u, v) + std::log1p(std::exp(-std::abs(u - v)));
}

double TwoPowers::logArgument(double logValue) const {
    const double alone = (logValue - logA_) / p_, other = (logValue - logC_) / q_;
    double x = p_ < 0 ? std::max(alone, other) : std::min(alone, other);
    constexpr int kMostSteps = 50; // five serve; the limit only guards against rounding that swings
    for (int step = 0; step < kMostSteps; ++step) {
        const double u = logA_ + p_ * x, v = logC_ + q_ * x;
        const double small = std::exp(-std::abs(u - v));
        const double share = 1.0 / (1.0 + small); // of the larger power
        const double slope = u > v ? p_ * share + q_ * small * share : q_ * share + p_ * small * share;
        const double next = x - (std::max(u, v) + std::log1p(small) - logValue) / slope;
        const double change = std::abs(next - x);
        x = next;
        if (change <= 1e-13 * std::max(1.0, std::abs(x))) break;
    }
    return x;
}

} // namespace solver
