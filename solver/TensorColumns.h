#pragma once

#include "solver/Definition.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace solver {

using Vector3 = std::array<double, 3>;

/// The tensors of a history, component by component, so that loops over the times run through memory in
/// order.
class TensorColumns {
  public:
    void resize(std::size_t length);
    std::size_t length() const { return length_; }

    /// Stores `path` from position `first` on.
    void put(std::size_t first, std::span<const Tensor> path);

    /// The normal component on the plane with this unit normal, n T n, at every time; returns the smallest
    /// and the largest one. The history is not empty.
    struct Extremes {
        double smallest, largest;
    };
    Extremes project(const Vector3& normal, std::vector<double>& values) const;

    /// Every component is finite and leaves room for the sums of a projection.
    bool projectable() const;

  private:
    std::size_t length_ = 0;
    std::array<std::vector<double>, 6> columns_;
};

} // namespace solver
