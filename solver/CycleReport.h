#pragma once

#include "base/Result.h"
#include "solver/Definition.h"
#include "solver/Evaluation.h"

#include <cstddef>
#include <vector>

namespace solver {

/// How one node's damage comes about, for one correction.
struct CycleReport {
    unsigned correction = 0; ///< index into resultfile::fatigue::kCorrections
    Outcome outcome; ///< with the governing material and, where planes are searched, the plane's normal
    /// What was counted, at every time or step of one block: the measure, or the normal component on the
    /// governing plane; stress for stress-life types, else strain.
    std::vector<double> history;
    /// For strain-life types the stress at the same times: that of the file, or that of the material's
    /// hysteresis; 0 where the material has no cyclic curve. Empty for stress-life types.
    std::vector<double> stress;
    /// The counted cycles of one block; their damage times the blocks sums up to the outcome's. For
    /// stress-life types meanStress is the mean.
    std::vector<EvaluatedCycle> cycles;
};

/// Evaluates one node of a batch, one report for each correction of the plan. Fails when the node has no
/// material or its history exceeds the range of numbers.
Result<std::vector<CycleReport>> reportCycles(const Definition& definition, const EvaluationPlan& plan,
                                              const NodeBatch& batch, std::size_t node);

} // namespace solver
