#include "solver/StrainLife.h"
#include "tests/solver/program/RunHarness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

// Cases with a published answer, run through the program, or through the one part that the case is about. The
// table that this prints is the one of docs/fatigue.md.

namespace {

using interfacefile::Content;
namespace fatigue = resultfile::fatigue;

struct Row {
    const char* what;
    const char* source;
    double published;
    double
        tolerance; ///< of the ratio: the figures that the source prints, or its rounding of intermediate ones
    std::function<double()> ours;
};

/// The largest and the first value again, so that the block leaves nothing open.
std::vector<double> cycle(double amplitude, double mean) {
    return {mean + amplitude, mean - amplitude, mean + amplitude};
}

double valueOf(const Content& content, unsigned base, unsigned correction) {
    SolverRun run;
    if (run.run(content) != 0) {
        ADD_FAILURE() << run.err;
        return 0;
    }
    return run.values(base, correction)[0];
}

Content request(Content content, std::initializer_list<std::size_t> flags) {
    content.flags = {0, 0, 0, 0, 0, 0, 1, 1, 1};
    for (const std::size_t flag : flags)
        content.flags[flag] = 1;
    content.infiniteLife = 1e30;
    return content;
}

/// Stress-life of one cycle; coefficient and exponent for whole cycles.
Content stressLife(double amplitude, double mean, double coefficient, double exponent, double ultimate = 1000,
                   double yield = 800) {
    Content content = request(interfacefile::stepsOf({cycle(amplitude, mean)}), {0, 1, 2, 3, 4, 5});
    content.materials[0].basquin = {coefficient, exponent};
    content.materials[0].ultimate = ultimate;
    content.materials[0].yield = yield;
    return content;
}

/// Basquin's line in reversals, sigma_f' (2N)^b, for whole cycles.
Content inReversals(double amplitude, double mean, double coefficient, double exponent) {
    return stressLife(amplitude, mean, coefficient * std::pow(2, exponent), exponent, 1e6, 1e6);
}

Content strainLife(const std::vector<double>& strains, const interfacefile::StrainLife& material) {
    Content content = request(interfacefile::stepsOf({strains}), {0, 1, 2, 3});
    content.type = 3;
    content.strainLife = {material};
    return content;
}

double astmCycles(double range) {
    solver::Rainflow counter;
    std::vector<solver::Cycle> cycles;
    solver::countCycles(std::vector<double>{-2, 1, -3, 5, -1, 3, -4, 4, -2}, counter, cycles);
    double count = 0;
    for (const auto& c : cycles)
        if (c.range == range) count += c.count;
    return count;
}

/// Shigley's problem in blocks of a fortieth: 100 cycles of 48, 1500 of 38, the rest of 32 kpsi.
double blocksToFailure() {
    std::vector<double> history{48};
    for (const auto& [amplitude, cycles] : {std::pair{48.0, 100}, {38.0, 1500}, {32.0, 5229}})
        for (int i = 0; i < cycles; ++i) {
            history.push_back(-amplitude);
            history.push_back(amplitude);
        }
    history.push_back(48);
    Content content = request(interfacefile::stepsOf({history}), {0});
    content.materials[0].basquin = {155.95, -0.11931};
    return valueOf(content, fatigue::kLife, fatigue::kNone);
}

/// The stress after the last of some turning points.
double stressAfter(const solver::StrainLifeMaterial& material, const std::vector<double>& strains) {
    const auto model = solver::StrainLifeModel::make(material);
    std::vector<solver::StressStrain> points;
    for (const double strain : strains)
        points.push_back({strain, 0});
    solver::HysteresisPath().follow(*model, points);
    return points.back().stress;
}

constexpr const char* kAstm = "ASTM E1049-85, 5.4.4, example";
constexpr const char* kShigley = "Shigley's Mech. Eng. Design, 8th ed., problem ";
constexpr const char* kDowling = "Dowling, Mechanical Behavior of Materials, ch. 9, p. 458";
constexpr const char* kModarres = "manual of the package reliability, after Modarres 2017";

constexpr interfacefile::StrainLife kManual{210000, 0.3, 0.2, 1200, 1000, -0.1, 1.1, -0.6};
constexpr solver::StrainLifeMaterial kManualMaterial{210000, 0.3, 0.2, 1200, 1000, -0.1, 1.1, -0.6};
constexpr solver::StrainLifeMaterial kFitted{216000,    0.3,        0.19810419512, 1462.4649152,
                                             1097.4054, -0.0889834, 0.2366454,     -0.4501078};

} // namespace

TEST(FatigueSolver, PublishedCases) {
    using fatigue::kEquivalentAmplitude, fatigue::kLife;
    const std::string s615 = std::string(kShigley) + "6-15", s628 = std::string(kShigley) + "6-28",
                      s629 = std::string(kShigley) + "6-29", s630 = std::string(kShigley) + "6-30a";
    const auto of = [](const Content& content, unsigned base, unsigned correction) {
        return [=] { return valueOf(content, base, correction); };
    };
    const auto shigley628 = stressLife(272.7, 454.5, 2594, -0.1532, 1000, 800);
    const auto shigley629 = stressLife(140, 280, 1409.8, -0.141355, 590, 500);
    const auto dowling = inReversals(450, 200, 1758, -0.0977);
    const Row rows[] = {
        {"rainflow, cycles of range 3", kAstm, 0.5, 0, [] { return astmCycles(3); }},
        {"rainflow, cycles of range 4", kAstm, 1.5, 0, [] { return astmCycles(4); }},
        {"rainflow, cycles of range 6", kAstm, 0.5, 0, [] { return astmCycles(6); }},
        {"rainflow, cycles of range 8", kAstm, 1.0, 0, [] { return astmCycles(8); }},
        {"rainflow, cycles of range 9", kAstm, 0.5, 0, [] { return astmCycles(9); }},
        {"Basquin, life", s615.c_str(), 45800, 2e-3,
         of(stressLife(358.5, 0, 891.0, -0.084828), kLife, fatigue::kNone)},
        {"Goodman, amplitude", s628.c_str(), 499.9, 2e-4,
         of(shigley628, kEquivalentAmplitude, fatigue::kGoodman)},
        {"Goodman, life", s628.c_str(), 46520, 2e-3, of(shigley628, kLife, fatigue::kGoodman)},
        {"Goodman, amplitude", s629.c_str(), 266.5, 2e-4,
         of(shigley629, kEquivalentAmplitude, fatigue::kGoodman)},
        {"Goodman, life", s629.c_str(), 131200, 3e-3, of(shigley629, kLife, fatigue::kGoodman)},
        {"Gerber, amplitude", "by hand: 272.7 / (1 - 0.4545^2)", 343.698, 1e-5,
         of(shigley628, kEquivalentAmplitude, fatigue::kGerber)},
        {"Soderberg, amplitude", "by hand: 272.7 / (1 - 454.5 / 800)", 631.433, 1e-5,
         of(shigley628, kEquivalentAmplitude, fatigue::kSoderberg)},
        {"Morrow, amplitude", kDowling, 507.8, 2e-4, of(dowling, kEquivalentAmplitude, fatigue::kMorrow)},
        {"Morrow, life", kDowling, 166000, 4e-3, of(dowling, kLife, fatigue::kMorrow)},
        {"SWT, life", kDowling, 86900, 4e-3, of(dowling, kLife, fatigue::kSwt)},
        {"three blocks, life in blocks", s630.c_str(), 40, 3e-3, [] { return blocksToFailure(); }},
        {"cyclic curve, stress at 0.006", kModarres, 483.85816, 1e-6,
         [] { return stressAfter(kFitted, {0.006}); }},
        {"hysteresis, stress at 0.0049014", kModarres, 378.0, 1e-9,
         [] { return stressAfter(kManualMaterial, {0.004901364196875}); }},
        {"then at -0.0028983", kModarres, -328.8931121800317, 1e-9,
         [] {
             return stressAfter(kManualMaterial, {0.004901364196875, -0.0028982508530831477});
         }},
        {"strain-life SWT, life", kModarres, 13771.39, 1e-5,
         of(strainLife({0.0049, -0.0029, 0.0049}, kManual), kLife, fatigue::kSwt)},
    };
    std::printf("%-34s %-56s %12s %12s\n", "case", "source", "published", "ours");
    for (const Row& row : rows) {
        const double ours = row.ours();
        std::printf("%-34s %-56s %12.6g %12.6g\n", row.what, row.source, row.published, ours);
        EXPECT_NEAR(ours / row.published, 1, row.tolerance) << row.what << ", " << row.source;
    }
}
