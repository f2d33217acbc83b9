#pragma once

#include "base/Result.h"
#include "workbench/picture/ContourPicture.h"

namespace workbench {

/// The places of the nodes after `factor` times their displacements. Fails, naming the node, where one is not
/// finite.
Result<std::vector<std::array<double, 3>>>
deformedPositions(const T_QM_MESH_D& mesh, std::span<const std::array<float, 3>> displacements,
                  double factor);

} // namespace workbench
