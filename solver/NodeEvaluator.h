#pragma once

#include "base/Result.h"
#include "solver/CriticalPlane.h"
#include "solver/Definition.h"
#include "solver/Evaluation.h"
#include "solver/LoadHistory.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace solver {

/// Evaluates the nodes of batches, with the memory that it takes.
class NodeEvaluator {
  public:
    /// Both must outlive the object.
    NodeEvaluator(const Definition& definition, const EvaluationPlan& plan);

    /// Replaces `outcomes` by those of the batch: node by node, one for each correction of the plan. Those of
    /// nodes without material mean nothing.
    Result<void> evaluate(const NodeBatch& batch, std::vector<Outcome>& outcomes);

    /// What was counted at one node for an outcome of it: the measure, or the history on the governing plane.
    /// Valid until the next call.
    Result<ScalarHistory> history(const NodeBatch& batch, std::size_t node, const Outcome& outcome);

    EvaluationScratch& scratch() { return scratch_; }

  private:
    void split(std::span<const Tensor> tensors);
    Result<void> loadPlanes(const NodeBatch& batch, std::size_t node);
    Result<void> evaluatePlanes(const NodeBatch& batch, std::vector<Outcome>& outcomes);
    Result<void> evaluateMeasures(const NodeBatch& batch, std::vector<Outcome>& outcomes);
    NodeTensors planes() const { return {countedColumns_, plan_.stressMeasure ? &stressColumns_ : nullptr}; }

    const Definition& definition_;
    const EvaluationPlan& plan_;
    LoadHistory history_;
    EvaluationScratch scratch_;
    PlaneSearch search_;
    std::vector<Governing> governing_;
    std::vector<double> values_, stressValues_;    ///< of the measures, node by node
    std::vector<Tensor> counted_, stress_;         ///< of stress and strain together, each for itself
    TensorColumns countedColumns_, stressColumns_; ///< of one node
};

/// The materials of a node of the batch.
std::span<const std::uint32_t> materialsOf(const NodeBatch& batch, std::size_t node);

} // namespace solver
