#pragma once

#include "base/Result.h"
#include "host/POHTree.h"
#include "host/records/Mesh.h"
#include "workbench/picture/ContourPicture.h"
#include "workbench/session/WorkbenchHost.h"

#include <array>
#include <cstdint>
#include <vector>

namespace workbench::cli {

/// Damage and life spread over many powers of ten.
bool isSpreadWidely(unsigned id);
/// Of a life and of a factor of safety the smallest value is the worst.
bool smallestIsWorst(unsigned id);

/// From the database to the current units.
double shownFactor(unsigned id);
/// One value a node in the current units; NaN where the table has none, and where a local factor of safety is
/// undefined, which would look like the least of all.
Result<std::vector<float>> shownValues(CVResult& table, const T_QM_MESH_D& mesh);

/// Titles and words in the host's language, and the spread over the colours that fits the component.
ContourPicture describedPicture(const WorkbenchHost& host, CVResult& table);

/// One displacement a node from the components X, Y and Z of the step; NaN where a node has none.
Result<std::vector<std::array<float, 3>>> displacementsOf(CPOHVCase& step, const T_QM_MESH_D& mesh);

/// Which elements can have values of this table: those that it lists, where it stands at element corners;
/// else those of its family, solid or planar. Empty when all can.
std::vector<std::uint8_t> valuedElements(const T_RESULT_TABLE_D& table, const T_QM_MESH_D& mesh);

} // namespace workbench::cli
