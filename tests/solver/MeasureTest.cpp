#include "solver/EquivalentMeasure.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

using solver::Tensor;
using Matrix = std::array<std::array<double, 3>, 3>;

Matrix matrixOf(const Tensor& t) {
    return {{{t[0], t[3], t[5]}, {t[3], t[1], t[4]}, {t[5], t[4], t[2]}}};
}

/// Largest and smallest eigenvalue by Jacobi rotations.
std::pair<double, double> jacobi(Matrix m) {
    for (int sweep = 0; sweep < 30; ++sweep)
        for (const auto& [p, q] : {std::pair{0, 1}, std::pair{0, 2}, std::pair{1, 2}}) {
            if (m[p][q] == 0) continue;
            const double angle = 0.5 * std::atan2(2 * m[p][q], m[q][q] - m[p][p]);
            const double c = std::cos(angle), s = std::sin(angle);
            for (int k = 0; k < 3; ++k) {
                const double a = m[k][p], b = m[k][q];
                m[k][p] = c * a - s * b;
                m[k][q] = s * a + c * b;
            }
            for (int k = 0; k < 3; ++k) {
                const double a = m[p][k], b = m[q][k];
                m[p][k] = c * a - s * b;
                m[q][k] = s * a + c * b;
            }
        }
    return {std::max({m[0][0], m[1][1], m[2][2]}), std::min({m[0][0], m[1][1], m[2][2]})};
}

double measure(std::size_t option, const Tensor& tensor) {
    double value = 0;
    solver::equivalentMeasures()[option - 1].evaluate(std::span(&tensor, 1), std::span(&value, 1));
    return value;
}

} // namespace

TEST(EquivalentMeasure, KnownTensors) {
    struct Row {
        const char* name;
        Tensor tensor;
        double principal;
        double vonMises;
    };
    const double root3 = std::sqrt(3.0);
    const Row rows[] = {
        {"nothing", {0, 0, 0, 0, 0, 0}, 0, 0},
        {"tension", {0, 7, 0, 0, 0, 0}, 7, 7},
        {"compression", {0, 0, -7, 0, 0, 0}, -7, -7},
        {"hydrostatic", {5, 5, 5, 0, 0, 0}, 5, 0},
        {"hydrostatic pressure", {-5, -5, -5, 0, 0, 0}, -5, 0},
        {"pure shear counts as tension", {0, 0, 0, 4, 0, 0}, 4, 4 * root3},
        {"reversed pure shear too", {0, 0, 0, 0, -4, 0}, 4, 4 * root3},
        {"plane stress", {50, -10, 0, 40, 0, 0}, 70, std::sqrt(2500 + 100 + 500 + 4800)},
        {"plane stress in yz", {0, 50, -10, 0, 40, 0}, 70, std::sqrt(2500 + 100 + 500 + 4800)},
        {"plane stress in zx, compressive", {10, 0, -50, 0, 0, 40}, -70, -std::sqrt(2500 + 100 + 500 + 4800)},
        {"equal shears: 2, -1, -1", {0, 0, 0, 1, 1, 1}, 2, 3},
        {"equal shears, reversed", {0, 0, 0, -1, -1, -1}, -2, -3},
        {"tiny", {1e-310, 0, 0, 1e-310, 1e-310, 0}, 0, 0},
        {"large", {0, 0, 0, 1e300, 1e300, 1e300}, 2e300, 3e300},
    };
    for (const Row& row : rows) {
        const double tolerance = 1e-14 * std::abs(row.principal) + 1e-300;
        EXPECT_NEAR(measure(1, row.tensor), row.principal, tolerance) << row.name;
        EXPECT_NEAR(measure(2, row.tensor), row.vonMises, 1e-14 * std::abs(row.vonMises) + 1e-300)
            << row.name;
    }
}

TEST(EquivalentMeasure, PrincipalsAgreeWithJacobi) {
    RandomIntegers random;
    for (int round = 0; round < 3000; ++round) {
        Tensor tensor;
        // Few levels make twofold values and zeros common.
        const std::size_t levels = round % 2 == 0 ? 3 : 2000001;
        for (double& component : tensor)
            component = static_cast<double>(random.below(levels)) - static_cast<double>(levels / 2);
        const auto [largest, smallest] = jacobi(matrixOf(tensor));
        const auto found = solver::principalExtremes(tensor);
        const double scale = std::max(std::abs(largest), std::abs(smallest)) + 1e-300;
        ASSERT_NEAR(found.largest / scale, largest / scale, 5e-8) << random.seedText();
        ASSERT_NEAR(found.smallest / scale, smallest / scale, 5e-8) << random.seedText();
    }
}

TEST(EquivalentMeasure, NearlyHydrostaticStaysFinite) {
    for (const double shear : {1e-7, 1e-12, 1e-16, 1e-60, 1e-200}) {
        const auto extremes = solver::principalExtremes({1, 1, 1, shear, shear, 0});
        EXPECT_NEAR(extremes.largest, 1, 2 * shear + 1e-15) << shear;
        EXPECT_NEAR(extremes.smallest, 1, 2 * shear + 1e-15) << shear;
    }
}

// In pure shear both principals are of one magnitude; rounding must not turn the sign from step to step.
TEST(EquivalentMeasure, PureShearKeepsItsSignInAnyDirection) {
    RandomIntegers random;
    for (int round = 0; round < 500; ++round) {
        const double angle = static_cast<double>(random.below(1000)) / 500;
        const double c = std::cos(angle), s = std::sin(angle),
                     shear = 1e8 + static_cast<double>(random.below(1000));
        // Shear between x and the direction (0, c, s), with a third turned part: n sym m with n normal to m.
        const double n[3] = {c, s, 0}, m[3] = {-s * c, c * c, s};
        Tensor t{2 * n[0] * m[0],           2 * n[1] * m[1],           2 * n[2] * m[2],
                 n[0] * m[1] + n[1] * m[0], n[1] * m[2] + n[2] * m[1], n[2] * m[0] + n[0] * m[2]};
        for (double& component : t)
            component *= shear;
        ASSERT_GT(measure(1, t), 0) << random.seedText();
        ASSERT_GT(measure(2, t), 0) << random.seedText();
    }
}
