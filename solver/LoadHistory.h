#pragma once

#include "solver/Definition.h"
#include "solver/EquivalentMeasure.h"
#include "solver/TensorColumns.h"

#include <cstddef>
#include <span>
#include <vector>

namespace solver {

/// Turns the tensors of a node's loads into its tensors over one pass of the load: for case-based types, at
/// each time of the merged axis, the sum over the entries of factor x load function x tensor; for step-based
/// types the steps themselves.
class LoadHistory {
  public:
    /// `definition` must outlive the object.
    explicit LoadHistory(const Definition& definition)
        : definition_(definition) {}

    /// Times or steps in one pass.
    std::size_t length() const;

    /// The measure at every time for some nodes: `tensors` holds definition.loadsPerNode() tensors a node,
    /// `values` gets length() values a node. Of stress and strain together, one of the two is given.
    void evaluate(const EquivalentMeasure& measure, std::span<const Tensor> tensors,
                  std::span<double> values);

    /// All tensors of one node's history, from its definition.loadsPerNode() tensors.
    void columns(std::span<const Tensor> tensors, TensorColumns& columns);

  private:
    void fillWeights(std::size_t first, std::size_t count);
    /// How many times go through at once.
    std::size_t piece() const;

    const Definition& definition_;
    std::vector<double> weights_;               ///< of some times, entry by entry within a time
    std::size_t heldFirst_ = 0, heldCount_ = 0; ///< which times these are
    std::vector<Tensor> path_;                  ///< of one node, at the same times
};

/// Linear between the points; the end values hold outside.
double valueAt(const LoadFunction& function, double time);

} // namespace solver
