#include "solver/Evaluation.h"

#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using solver::Definition;
using solver::EvaluationPlan;
using solver::Outcome;

EvaluationPlan planFor(bool tabulated, double infiniteLife) {
    Definition definition;
    definition.stressOption = 1;
    definition.corrections = {true, true, false, false, false, false};
    definition.outputs = {true, true, true};
    definition.infiniteLife = infiniteLife;
    definition.loadCycleCount = 5;
    solver::StressLifeMaterial material;
    material.ultimateStrength = 600;
    material.tabulated = tabulated;
    material.basquin = {1000, -0.12};
    material.points = {{1e2, 500}, {1e4, 300}, {1e5, 300}, {1e7, 120}};
    definition.stressLifeMaterials = {material};
    std::vector<std::string> notes;
    auto plan = solver::makePlan(definition, notes);
    if (!plan) throw std::runtime_error(plan.error().message);
    return *plan;
}

std::vector<Outcome> evaluate(const EvaluationPlan& plan, std::vector<double> history, double scale,
                              double shift) {
    for (double& value : history)
        value = value * scale + shift;
    const std::uint32_t material = 0;
    solver::EvaluationScratch scratch;
    std::vector<Outcome> outcomes(plan.corrections.size());
    solver::evaluateHistory(plan, {history, {}}, std::span(&material, 1), scratch, outcomes);
    return outcomes;
}

} // namespace

TEST(Evaluation, MoreLoadNeverLengthensLife) {
    RandomIntegers random;
    const EvaluationPlan plans[] = {planFor(false, 1e30), planFor(false, 1e6), planFor(true, 1e30),
                                    planFor(true, 1e6)};
    for (int round = 0; round < 500; ++round) {
        const EvaluationPlan& plan = plans[round % 4];
        std::vector<double> history(2 + random.below(30));
        for (double& value : history)
            value = static_cast<double>(random.below(1001)) - 400;
        const auto before = evaluate(plan, history, 1, 0);
        const auto scaled = evaluate(plan, history, 1 + static_cast<double>(random.below(100)) / 50, 0);
        const auto shifted = evaluate(plan, history, 1, static_cast<double>(random.below(500)));
        for (std::size_t correction = 0; correction < 2; ++correction) {
            ASSERT_LE(scaled[correction].life, before[correction].life) << random.seedText();
            ASSERT_GE(scaled[correction].damage, before[correction].damage) << random.seedText();
            ASSERT_GE(scaled[correction].equivalentAmplitude,
                      before[correction].equivalentAmplitude * (1 - 1e-12))
                << random.seedText();
            // Shifting rounds ranges; without a correction it does no more than that.
            ASSERT_LE(shifted[correction].life, before[correction].life * (1 + 1e-9)) << random.seedText();
        }
        ASSERT_LE(before[1].life, before[0].life) << "Goodman never helps; " << random.seedText();
    }
}
