#include "solver/StrainLife.h"

#include "resultfile/FatigueComponents.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

namespace fatigue = resultfile::fatigue;
using solver::StrainCycle;
using solver::StrainLifeMaterial;
using solver::StrainLifeModel;

// E, nu, n', K', sigma_f', b, eps_f', c
constexpr StrainLifeMaterial kSteel{210000, 0.3, 0.2, 1200, 1000, -0.1, 1.1, -0.6};

StrainLifeModel model(const StrainLifeMaterial& material = kSteel) {
    auto made = StrainLifeModel::make(material);
    if (!made) throw std::runtime_error(made.error().message);
    return *made;
}

/// The stress of a material of many ideal sliders in parallel (W. D. Iwan, J. Appl. Mech. 33 (1966) 893),
/// which follows Masing's branches and their memory without knowing of either: each slider holds a spring
/// that yields at a strain of its own, and together they make the cyclic curve in straight pieces.
class Sliders {
  public:
    Sliders(const StrainLifeModel& material, double largestStrain, int count) {
        const double piece = largestStrain / count;
        double before = material.stressAt(piece) / piece;
        for (int i = 1; i <= count; ++i) {
            const double next = (material.stressAt((i + 1) * piece) - material.stressAt(i * piece)) / piece;
            sliders_.push_back({before - next, i * piece, 0});
            before = next;
        }
        last_ = before;
    }
    double stressAt(double strain) {
        double sum = last_ * strain;
        for (Slider& s : sliders_) {
            s.strain = std::clamp(s.strain + strain - strain_, -s.yield, s.yield);
            sum += s.stiffness * s.strain;
        }
        strain_ = strain;
        return sum;
    }

  private:
    struct Slider {
        double stiffness, yield, strain;
    };
    std::vector<Slider> sliders_;
    double last_ = 0, strain_ = 0;
};

} // namespace

TEST(StrainLife, LifeUndoesTheCurve) {
    RandomIntegers random;
    const auto between = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random.below(100001)) / 1e5;
    };
    for (int round = 0; round < 2000; ++round) {
        const StrainLifeMaterial m{between(5e4, 3e5),
                                   0.3,
                                   between(0.05, 0.5),
                                   between(200, 3000),
                                   between(300, 3000),
                                   between(-0.2, -0.03),
                                   round % 10 == 0 ? 0 : between(0.01, 3),
                                   between(-1.2, -0.25)};
        const auto material = model(m);
        const double reversals = std::pow(10, between(0.1, 14));
        const double elastic =
            m.fatigueStrengthCoefficient / m.modulus * std::pow(reversals, m.fatigueStrengthExponent);
        const double plastic =
            m.fatigueDuctilityCoefficient * std::pow(reversals, m.fatigueDuctilityExponent);
        const double power = m.fatigueDuctilityExponent / m.fatigueStrengthExponent;
        const double mean = between(0, 0.9) * m.fatigueStrengthCoefficient;
        const double rest = 1 - mean / m.fatigueStrengthCoefficient;
        // Largest stress of the cycle that the closed form of the correction gives this life.
        const double largest = m.fatigueStrengthCoefficient * std::pow(reversals, m.fatigueStrengthExponent);
        const struct {
            unsigned correction;
            StrainCycle cycle;
        } rows[] = {
            {fatigue::kNone, {{2 * (elastic + plastic), 0, 1}, mean, 1}},
            {fatigue::kMorrow, {{2 * (elastic * rest + plastic), 0, 1}, mean, 1}},
            {fatigue::kMansonHalford,
             {{2 * (elastic * rest + plastic * std::pow(rest, power)), 0, 1}, mean, 1}},
            {fatigue::kSwt, {{2 * (elastic + plastic), 0, 1}, mean, largest}},
        };
        for (const auto& row : rows) {
            const double cycles = material.cyclesToFailure(row.correction, row.cycle);
            ASSERT_NEAR(2 * cycles / reversals, 1, 1e-8)
                << fatigue::kCorrections[row.correction] << "; " << random.seedText();
            ASSERT_NEAR(material.amplitudeAt(cycles) / (elastic + plastic), 1, 1e-8) << random.seedText();
        }
        const double strain = std::pow(10, between(-7, 0));
        const double stress = material.stressAt(strain);
        ASSERT_NEAR((stress / m.modulus +
                     std::pow(stress / m.cyclicStrengthCoefficient, 1 / m.cyclicHardeningExponent)) /
                        strain,
                    1, 1e-9)
            << random.seedText();
        ASSERT_EQ(material.stressAt(-strain), -stress);
    }
}

TEST(StrainLife, AtItsLimits) {
    const auto material = model();
    const double endless = std::numeric_limits<double>::infinity();
    struct Row {
        const char* name;
        unsigned correction;
        StrainCycle cycle;
        double cycles;
    };
    const double plain = material.cyclesToFailure(fatigue::kNone, {{0.01, 0, 1}, 0, 0});
    const Row rows[] = {
        {"no strain", fatigue::kNone, {{0, 0, 1}, 0, 0}, endless},
        {"more than half a cycle bears", fatigue::kNone, {{100, 0, 1}, 0, 0}, 0.5},
        {"mean at sigma_f'", fatigue::kMorrow, {{1e-9, 0, 1}, 1000, 1000}, 0.5},
        {"mean at sigma_f'", fatigue::kMansonHalford, {{1e-9, 0, 1}, 1000, 1000}, 0.5},
        {"compressive mean", fatigue::kMorrow, {{0.01, 0, 1}, -300, 100}, plain},
        {"compressive mean", fatigue::kMansonHalford, {{0.01, 0, 1}, -300, 100}, plain},
        {"no tension", fatigue::kSwt, {{0.01, 0, 1}, -500, 0}, endless},
        {"all but no strain", fatigue::kNone, {{1e-300, 0, 1}, 0, 0}, endless},
    };
    for (const Row& row : rows)
        EXPECT_DOUBLE_EQ(material.cyclesToFailure(row.correction, row.cycle), row.cycles) << row.name;
}

TEST(StrainLife, RefusesWhatMakesNoCurve) {
    using M = StrainLifeMaterial;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (double M::*member : {&M::modulus, &M::fatigueStrengthCoefficient, &M::fatigueStrengthExponent,
                              &M::fatigueDuctilityCoefficient, &M::fatigueDuctilityExponent})
        for (const double value : {nan, member == &M::fatigueDuctilityCoefficient ? -1.0 : 0.0, 1e308 * 10}) {
            StrainLifeMaterial material = kSteel;
            material.*member = value;
            EXPECT_FALSE(StrainLifeModel::make(material)) << value;
        }
    StrainLifeMaterial noCyclicCurve = kSteel;
    noCyclicCurve.cyclicHardeningExponent = 0;
    EXPECT_FALSE(model(noCyclicCurve).hasCyclicCurve());
}

// Sliders in parallel know neither Masing's rule nor the memory rules, but come to the same stresses.
TEST(HysteresisPath, FollowsSlidersInParallel) {
    RandomIntegers random;
    const auto material = model();
    constexpr double kLargest = 0.02;
    for (int round = 0; round < 20; ++round) {
        Sliders sliders(material, kLargest, 2000);
        std::vector<solver::StressStrain> points;
        for (int point = 0; point < 60; ++point)
            points.push_back(
                {kLargest * (static_cast<double>(random.below(2001)) / 1000 - 1) * (point < 30 ? 0.5 : 1.0),
                 0});
        solver::HysteresisPath().follow(material, points);
        for (const auto& [strain, stress] : points)
            ASSERT_NEAR(stress, sliders.stressAt(strain), 1.0) << random.seedText();
    }
}

TEST(HysteresisPath, PointsBetweenTurningPointsDoNoHarm) {
    RandomIntegers random;
    const auto material = model();
    std::vector<solver::StressStrain> coarse, fine;
    double last = 0;
    for (int point = 0; point < 300; ++point) {
        const double strain = static_cast<double>(random.below(41)) * 5e-4 - 0.01; // many equal ones
        for (int i = 1; i < 4; ++i)
            fine.push_back({last + (strain - last) * i / 4, 0});
        fine.push_back({strain, 0});
        coarse.push_back({strain, 0});
        last = strain;
    }
    solver::HysteresisPath path;
    path.follow(material, coarse);
    path.follow(material, fine);
    for (std::size_t i = 0; i < coarse.size(); ++i)
        ASSERT_NEAR(coarse[i].stress, fine[4 * i + 3].stress, 1e-6) << random.seedText();
}

// Any answer that the tables give must be that of solving, also for materials that bend sharply.
TEST(StrainLife, TablesAnswerAsSolvingDoes) {
    RandomIntegers random;
    const auto between = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random.below(100001)) / 1e5;
    };
    for (int round = 0; round < 12; ++round) {
        StrainLifeMaterial m{between(5e4, 3e5),
                             0.3,
                             between(0.05, 0.5),
                             between(200, 3000),
                             between(300, 3000),
                             between(-0.2, -0.03),
                             round == 1 ? 0 : between(0.01, 3),
                             between(-1.2, -0.25)};
        if (round == 2) m.fatigueDuctilityExponent = m.fatigueStrengthExponent;
        if (round == 3) m.cyclicHardeningExponent = 1e-3;
        const auto solving = model(m), tabulated = solving.tabulated();
        for (int i = 0; i < 300; ++i) {
            const double mean = between(-0.2, 1.1) * m.fatigueStrengthCoefficient;
            const double amplitude = std::pow(10, between(-8, 1));
            const StrainCycle cycle{{2 * amplitude, 0, 1}, mean, mean + between(0, 1000)};
            for (const unsigned correction : fatigue::kStrainLifeCorrections) {
                const double expected = solving.cyclesToFailure(correction, cycle);
                const double found = tabulated.cyclesToFailure(correction, cycle);
                ASSERT_EQ(std::isfinite(found), std::isfinite(expected)) << random.seedText();
                if (!std::isfinite(expected)) continue;
                ASSERT_NEAR(found / expected, 1, 1e-7)
                    << fatigue::kCorrections[correction] << "; " << random.seedText();
            }
            const double strain = amplitude * (i % 2 == 0 ? 1 : -1);
            ASSERT_NEAR(tabulated.stressAt(strain) / solving.stressAt(strain), 1, 1e-8) << random.seedText();
        }
        EXPECT_EQ(tabulated.stressAt(0), 0);
    }
}
