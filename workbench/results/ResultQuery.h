#pragma once

#include "base/Result.h"
#include "host/POHTree.h"
#include "host/QMDocBase.h"

#include <cstdint>
#include <string>
#include <vector>

namespace workbench {

/// The step that a person means: an analysis and a case by name and a step by name. An empty case name means
/// the only case, an empty step name the last step. A name that does not exist is answered with those that
/// do.
Result<CPOHVCase*> findStep(CPOHManager& results, const std::string& analysis, const std::string& caseName,
                            const std::string& stepName);

/// The table of a component of a step; an identifier that the step lacks is answered with those it has.
Result<CVResult*> findTable(CPOHVCase& step, unsigned id);

/// One value a node of the whole mesh; NaN where the table has none. The values of element corners are
/// averaged over the elements that meet at the node.
Result<std::vector<float>> nodalValues(CVResult& result, const T_QM_MESH_D& mesh);

/// Mesh positions of the `count` nodes with the largest (or smallest) finite values, worst first; equal
/// values in order of position.
std::vector<std::uint32_t> worstNodes(const std::vector<float>& values, std::size_t count, bool largest);

} // namespace workbench
