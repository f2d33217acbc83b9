#pragma once

#include "base/Result.h"
#include "workbench/document/MeshData.h"

#include <functional>

namespace workbench {

/// Checks that a mesh holds together, keys aside: equally long columns, numbers positive and strictly
/// ascending, finite coordinates, known element types with as many nodes as they have, node indices in range,
/// and properties that `isProperty` knows (0: an element without property). The message names the first item
/// that does not.
Result<void> checkMesh(const MeshData& mesh, const std::function<bool(ItrKey)>& isProperty);

} // namespace workbench
