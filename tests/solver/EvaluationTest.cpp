#include "solver/Evaluation.h"

#include "resultfile/FatigueComponents.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

namespace fatigue = resultfile::fatigue;
using solver::AnalysisType;
using solver::Definition;
using solver::EvaluationPlan;
using solver::Outcome;

/// All corrections of the type, small cycles and large ones within the curve.
EvaluationPlan planFor(AnalysisType type, bool tabulated, double infiniteLife) {
    Definition definition;
    definition.type = type;
    definition.stressOption = definition.strainOption = 1;
    definition.nodeCount = 1000; // enough for tables
    definition.corrections = {true, true, true, true, !tabulated, true};
    definition.outputs = {true, true, true};
    definition.infiniteLife = infiniteLife;
    definition.loadCycleCount = 5;
    if (solver::isStressLife(type))
        definition.stressLifeMaterials = {
            {2.1e5, 600, 450, tabulated, {1000, -0.12}, {{1e2, 500}, {1e4, 300}, {1e5, 300}, {1e7, 120}}}};
    else
        definition.strainLifeMaterials = {{2.1e5, 0.3, 0.2, 1200, 1000, -0.1, 1.1, -0.6}};
    std::vector<std::string> notes;
    auto plan = solver::makePlan(definition, notes);
    if (!plan) throw std::runtime_error(plan.error().message);
    return *plan;
}

std::vector<Outcome> evaluate(const EvaluationPlan& plan, std::vector<double> history, double scale = 1,
                              double shift = 0, std::vector<double> stress = {}) {
    for (double& value : history)
        value = value * scale + (stress.empty() ? shift : 0);
    for (double& value : stress)
        value = value * scale + shift;
    const std::uint32_t material = 0;
    solver::EvaluationScratch scratch;
    std::vector<Outcome> outcomes(plan.corrections.size());
    solver::evaluateHistory(plan, {history, stress}, std::span(&material, 1), scratch, outcomes);
    return outcomes;
}

std::vector<double> randomHistory(RandomIntegers& random, double unit) {
    std::vector<double> history(2 + random.below(30));
    for (double& value : history)
        value = unit * (static_cast<double>(random.below(1001)) - 400);
    return history;
}

/// `after` is the worse one, but for what rounding does to ranges where `rounding` is not 0.
void expectNoLonger(const Outcome& after, const Outcome& before, double rounding, const std::string& what) {
    ASSERT_LE(after.life, before.life * (1 + rounding)) << what;
    ASSERT_GE(after.damage, before.damage * (1 - rounding)) << what;
    ASSERT_GE(after.equivalentAmplitude, before.equivalentAmplitude * (1 - 1e-9)) << what;
}

} // namespace

TEST(Evaluation, MoreLoadNeverLengthensLife) {
    RandomIntegers random;
    const auto type = AnalysisType::StressLifeSteps;
    const EvaluationPlan plans[] = {planFor(type, false, 1e30), planFor(type, false, 1e6),
                                    planFor(type, true, 1e30), planFor(type, true, 1e6)};
    for (int round = 0; round < 500; ++round) {
        const EvaluationPlan& plan = plans[round % 4];
        const auto history = randomHistory(random, 1);
        const auto before = evaluate(plan, history);
        const auto scaled = evaluate(plan, history, 1 + static_cast<double>(random.below(100)) / 50);
        const auto shifted = evaluate(plan, history, 1, static_cast<double>(random.below(500)));
        for (std::size_t i = 0; i < before.size(); ++i) {
            const std::string what =
                std::string(fatigue::kCorrections[plan.corrections[i]]) + "; " + random.seedText();
            expectNoLonger(scaled[i], before[i], 1e-9, what);
            // Shifting rounds ranges; a cycle at the cut-off may then fall on either side of it.
            if (plan.infiniteLife > 1e6) expectNoLonger(shifted[i], before[i], 1e-9, what);
            if (plan.corrections[i] != fatigue::kSwt) expectNoLonger(before[i], before[0], 1e-9, what);
        }
    }
}

// With the stresses from the file, all corrections; with those of the hysteresis, the one without stresses,
// since plasticity takes off mean stress when the strain grows.
TEST(Evaluation, MoreStrainNeverLengthensLife) {
    RandomIntegers random;
    const auto both = planFor(AnalysisType::StressAndStrainSteps, false, 1e30);
    const auto strain = planFor(AnalysisType::StrainLifeSteps, false, 1e30);
    for (int round = 0; round < 300; ++round) {
        const auto history = randomHistory(random, 1e-5);
        std::vector<double> stress;
        for (const double value : history)
            stress.push_back(2e4 * value + static_cast<double>(random.below(200)) - 100);
        const double scale = 1 + static_cast<double>(random.below(100)) / 50;
        const auto before = evaluate(both, history, 1, 0, stress);
        const auto scaled = evaluate(both, history, scale, 0, stress);
        const auto pulled = evaluate(both, history, 1, static_cast<double>(random.below(500)), stress);
        for (std::size_t i = 0; i < before.size(); ++i) {
            expectNoLonger(scaled[i], before[i], 0, random.seedText());
            expectNoLonger(pulled[i], before[i], 0, random.seedText());
        }
        expectNoLonger(evaluate(strain, history, scale)[0], evaluate(strain, history)[0], 0,
                       random.seedText());
    }
    // Constant amplitude: a mean strain never helps, nor does it matter without a correction.
    for (const double amplitude : {0.001, 0.003, 0.01})
        for (const double mean : {0.0005, 0.002, 0.008}) {
            const auto before = evaluate(strain, {amplitude, -amplitude, amplitude});
            const auto after = evaluate(strain, {mean + amplitude, mean - amplitude, mean + amplitude});
            for (std::size_t i = 0; i < before.size(); ++i)
                expectNoLonger(after[i], before[i], 1e-9, std::to_string(amplitude));
            EXPECT_NEAR(after[0].life / before[0].life, 1, 1e-9);
        }
}

// What starts and ends at its extreme leaves nothing open; then a copy behind it does the same damage again.
// Of strains it must be the extreme of the larger magnitude, since the hysteresis settles there.
TEST(Evaluation, ACopyDoublesTheDamage) {
    RandomIntegers random;
    const EvaluationPlan plans[] = {planFor(AnalysisType::StressLifeSteps, false, 1e30),
                                    planFor(AnalysisType::StrainLifeSteps, false, 1e30)};
    for (int round = 0; round < 200; ++round) {
        const EvaluationPlan& plan = plans[round % 2];
        auto history = randomHistory(random, round % 2 == 0 ? 0.7 : 1e-5);
        const double sign = random.oneIn(2) ? 1 : -1; // an upper or a lower extreme
        for (double& value : history)
            value *= sign;
        history.front() = history.back() = sign * (round % 2 == 0 ? 0.7 : 1e-5) * 620;
        auto twice = history;
        twice.insert(twice.end(), history.begin(), history.end());
        const auto one = evaluate(plan, history), two = evaluate(plan, twice);
        for (std::size_t i = 0; i < one.size(); ++i) {
            ASSERT_NEAR(two[i].damage, 2 * one[i].damage, 1e-9 * two[i].damage) << random.seedText();
            ASSERT_NEAR(two[i].equivalentAmplitude, one[i].equivalentAmplitude,
                        1e-9 * one[i].equivalentAmplitude);
        }
    }
}
