#include "solver/LifeCurve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using solver::CurvePoint;
using solver::LifeCurve;

constexpr double kEndless = std::numeric_limits<double>::infinity();

struct Lookup {
    double amplitude;
    double cycles;
};

void expectLookups(const char* name, const Result<LifeCurve>& curve, const std::vector<Lookup>& lookups) {
    ASSERT_TRUE(curve) << name << ": " << curve.error().message;
    for (const auto& [amplitude, cycles] : lookups) {
        const double found = curve->cyclesToFailure(amplitude);
        const double lookedUp = curve->tabulated().cyclesToFailure(amplitude);
        if (std::isinf(cycles)) {
            EXPECT_EQ(found, cycles) << name << " at " << amplitude;
            EXPECT_EQ(lookedUp, cycles) << name << " at " << amplitude;
        } else {
            EXPECT_NEAR(found / cycles, 1, 1e-12) << name << " at " << amplitude;
            EXPECT_NEAR(lookedUp / cycles, 1, solver::PieceTable::kError) << name << " at " << amplitude;
        }
    }
}

} // namespace

TEST(LifeCurve, Basquin) {
    // amplitude = 1000 N^-0.1, so N = (1000 / amplitude)^10.
    expectLookups(
        "Basquin", LifeCurve::basquin(1000, -0.1),
        {{1000, 1}, {500, 1024}, {100, 1e10}, {10, 1e20}, {0, kEndless}, {2000, 0.5}, {kEndless, 0.5}});
    const auto steep = LifeCurve::basquin(1000, -300.0);
    ASSERT_TRUE(steep);
    EXPECT_NEAR(steep->cyclesToFailure(1e-200), std::pow(10, 203.0 / 300), 1e-9);
}

TEST(LifeCurve, Table) {
    const std::vector<CurvePoint> points{{1e3, 400}, {1e5, 200}, {1e7, 150}};
    expectLookups("table", LifeCurve::table(points),
                  {{400, 1e3},
                   {200, 1e5},
                   {150, 1e7},
                   {std::sqrt(400.0 * 200.0), 1e4}, // half way in both logarithms
                   {std::sqrt(200.0 * 150.0), 1e6},
                   {800, 10},    // the first slope goes on: twice the amplitude, 1/100 of the life
                   {112.5, 1e9}, // so does the last one: 150 * 150 / 200
                   {1e9, 0.5}});
    // Horizontal pieces: the smallest number of cycles counts; under a horizontal end nothing fails.
    expectLookups("plateaus",
                  LifeCurve::table(std::vector<CurvePoint>{{1e2, 400}, {1e3, 400}, {1e5, 100}, {1e6, 100}}),
                  {{401, 0.5}, {400, 1e2}, {200, 1e4}, {100, 1e5}, {99.9, kEndless}});
}

TEST(LifeCurve, AmplitudeUndoesCycles) {
    const auto curve = LifeCurve::table(std::vector<CurvePoint>{{1e3, 400}, {1e5, 200}, {1e7, 150}});
    ASSERT_TRUE(curve);
    for (const double amplitude : {900.0, 400.0, 333.0, 200.0, 160.0, 150.0, 20.0})
        EXPECT_NEAR(curve->amplitudeAt(curve->cyclesToFailure(amplitude)), amplitude, 1e-9 * amplitude);
}

TEST(LifeCurve, RefusesWhatMakesNoCurve) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Row {
        std::vector<CurvePoint> points;
        const char* word;
    };
    const Row rows[] = {
        {{}, "0 points"},
        {{{1e3, 400}}, "1 points"},
        {{{1e3, 400}, {1e3, 300}}, "point 2 of its curve must have more cycles"},
        {{{1e3, 400}, {1e2, 300}}, "more cycles"},
        {{{1e3, 300}, {1e4, 400}}, "larger amplitude"},
        {{{0, 400}, {1e4, 300}}, "more than 0"},
        {{{1e3, 400}, {1e4, 0}}, "point 2 of its curve must have a number"},
        {{{1e3, 400}, {1e4, nan}}, "more than 0"},
        {{{1e3, kEndless}, {1e4, 300}}, "more than 0"},
    };
    for (const Row& row : rows) {
        const auto curve = LifeCurve::table(row.points);
        ASSERT_FALSE(curve) << row.word;
        EXPECT_NE(curve.error().message.find(row.word), std::string::npos) << curve.error().message;
    }
    for (const double coefficient : {0.0, -1.0, nan, kEndless})
        EXPECT_FALSE(LifeCurve::basquin(coefficient, -0.1));
    for (const double exponent : {0.0, 0.1, nan, -kEndless})
        EXPECT_FALSE(LifeCurve::basquin(1000, exponent));
}
