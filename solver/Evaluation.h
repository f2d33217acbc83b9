#pragma once

#include "base/Result.h"
#include "solver/Definition.h"
#include "solver/EquivalentMeasure.h"
#include "solver/LifeCurve.h"
#include "solver/MeanStress.h"
#include "solver/Rainflow.h"
#include "solver/StrainLife.h"
#include "solver/TensorColumns.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace solver {

/// What a stress-life material brings into the evaluation.
struct MaterialModel {
    LifeCurve curve;
    Strengths strengths;
};

/// What is computed for each node, checked and ready for use.
struct EvaluationPlan {
    AnalysisType type = AnalysisType::StressLifeCases;
    const EquivalentMeasure* measure = nullptr; ///< of what is counted, stress or strain
    const EquivalentMeasure* stressMeasure =
        nullptr;                                  ///< of the stress beside the strain, where the file has it
    std::vector<MaterialModel> materials;         ///< stress-life types
    std::vector<StrainLifeModel> strainMaterials; ///< the other types
    std::vector<unsigned> corrections; ///< indices into resultfile::fatigue::kCorrections, ascending
    bool correctsMeanStress = false;   ///< some of them is more than None
    double infiniteLife = 0;           ///< cycles that take longer do no damage; no life is stated beyond it
    double smallestRange = 0;          ///< fraction of the largest range below which cycles are left out
    double blocks = 1;                 ///< passes over the load

    bool searchesPlanes() const { return !measure->evaluate; }
};

/// The plan for a definition. Fails, naming the option, when what is asked for makes no sense together, and
/// when a material's curve makes none. What the data do not support is left out and named in `notes`.
Result<EvaluationPlan> makePlan(const Definition& definition, std::vector<std::string>& notes);

/// What is counted at a node over one block, in the measure or on one plane.
struct ScalarHistory {
    std::span<const double> values; ///< stress or strain
    std::span<const double> stress; ///< beside strains, where the file has it; else empty
};

/// Miner's sums over one block.
struct BlockSums {
    double damage = 0;
    double uncutDamage = 0; ///< with the cycles beyond the infinite life
    double cycles = 0;
    double largestAmplitude = 0; ///< equivalent one; of stress-life alone
};

/// The sums that govern, and of which material on which plane they are.
struct Governing {
    BlockSums sums;
    std::uint32_t material = 0;
    Vector3 normal{}; ///< zero where no planes are searched

    /// More damage, then more damage without the infinite life's cut-off.
    bool worseThan(const Governing& other) const;
};

/// Memory that evaluating a node needs, kept from node to node.
struct EvaluationScratch {
    Rainflow counter;
    std::vector<Cycle> cycles;
    StrainScratch strain;
    std::vector<StrainCycle> strainCycles;
    std::vector<Governing> governing;
};

/// Evaluates one history: for each of `corrections` the material of `materials` (not empty) that governs.
/// Sets sums and material, not the normal.
void sumHistory(const EvaluationPlan& plan, std::span<const unsigned> corrections,
                const ScalarHistory& history, std::span<const std::uint32_t> materials,
                EvaluationScratch& scratch, std::span<Governing> governing);

/// A counted cycle and what it comes to.
struct EvaluatedCycle {
    double range = 0;
    double mean = 0;
    double count = 0; ///< 0.5 or 1
    double meanStress = 0;
    double largestStress = 0;
    double equivalentAmplitude = 0; ///< at mean stress 0, of the same life
    double cyclesToFailure = 0;
    double damage = 0; ///< in one block; 0 beyond the infinite life
};

/// The cycles of one history for one material and correction, in the order in which they close, the residue
/// last.
std::vector<EvaluatedCycle> evaluateEachCycle(const EvaluationPlan& plan, unsigned correction,
                                              const ScalarHistory& history, std::uint32_t material,
                                              EvaluationScratch& scratch);

/// An upper bound of the damage of any history of these extremes.
struct DamageBound {
    double uncutDamage = 0;
    bool beyondInfiniteLife = false; ///< no cycle does damage
};

/// `largestStress` is that of the history beside strains. What makes it a bound is that no counted cycle has
/// a larger range or a larger maximum than the history, and that all rules only ever shorten lives when
/// either grows.
DamageBound boundDamage(const EvaluationPlan& plan, unsigned correction, std::uint32_t material,
                        TensorColumns::Extremes extremes, double largestStress, std::size_t length);

/// The result of one correction at one node.
struct Outcome {
    double damage = 0; ///< of all blocks; 1 is failure
    double life = 0;   ///< blocks to failure, the infinite life at most
    double equivalentAmplitude =
        0;                      ///< constant amplitude of the same damage in as many cycles, without cut-off
    std::uint32_t material = 0; ///< the governing one
    Vector3 normal{};           ///< of the governing plane, where planes are searched
};

Outcome outcomeOf(const EvaluationPlan& plan, const Governing& governing);

/// Evaluates one node from its history over one block; one outcome for each correction of the plan.
void evaluateHistory(const EvaluationPlan& plan, const ScalarHistory& history,
                     std::span<const std::uint32_t> materials, EvaluationScratch& scratch,
                     std::span<Outcome> outcomes);

} // namespace solver
