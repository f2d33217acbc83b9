#pragma once

#include "base/Result.h"
#include "solver/Definition.h"
#include "solver/EquivalentMeasure.h"
#include "solver/LifeCurve.h"
#include "solver/MeanStress.h"
#include "solver/Rainflow.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace solver {

/// What a material brings into the evaluation.
struct MaterialModel {
    LifeCurve curve;
    Strengths strengths;
};

/// What is computed for each node, checked and ready for use.
struct EvaluationPlan {
    const EquivalentMeasure* measure = nullptr;
    std::vector<MaterialModel> materials;
    std::vector<unsigned> corrections; ///< indices into meanStressCorrections(), ascending
    double infiniteLife = 0;           ///< cycles that take longer do no damage; no life is stated beyond it
    double smallestRange = 0;          ///< fraction of the largest range below which cycles are left out
    double blocks = 1;                 ///< passes over the load
};

/// The plan for a definition. Fails, naming the option, when this version does not support what is asked for,
/// and when a material's curve makes no sense. What the data do not support is left out and named in `notes`.
Result<EvaluationPlan> makePlan(const Definition& definition, std::vector<std::string>& notes);

/// The result of one correction at one node.
struct Outcome {
    double damage = 0; ///< of all blocks; 1 is failure
    double life = 0;   ///< blocks to failure, the infinite life at most
    double equivalentAmplitude =
        0;                      ///< constant amplitude of the same damage in as many cycles, without cut-off
    std::uint32_t material = 0; ///< the governing one
};

/// Miner's sum over the cycles of one block for each of `materials` (not empty); the worst one governs.
Outcome evaluateCycles(const EvaluationPlan& plan, const MeanStressCorrection& correction,
                       std::span<const Cycle> cycles, std::span<const std::uint32_t> materials);

/// Memory that evaluating a node needs, kept from node to node.
struct EvaluationScratch {
    Rainflow counter;
    std::vector<Cycle> cycles;
};

/// Evaluates one node from the history of its measure over one block; one outcome for each correction of the
/// plan.
void evaluateHistory(const EvaluationPlan& plan, std::span<const double> history,
                     std::span<const std::uint32_t> materials, EvaluationScratch& scratch,
                     std::span<Outcome> outcomes);

} // namespace solver
