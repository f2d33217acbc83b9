#pragma once

#include "base/Result.h"
#include "workbench/document/ModelDatabase.h"
#include "workbench/import/ProjectDeck.h"
#include "workbench/import/SolverDeck.h"

#include <map>
#include <string>
#include <vector>

namespace workbench {

/// Adds mesh, mesh sets, materials and properties of a solver deck to `database`, inside its open
/// transaction. The mesh of `deck` is used up. What had to be decided is added to `warnings`.
Result<void> addModel(SolverDeck& deck, ModelDatabase& database, std::vector<std::string>& warnings);

/// Adds an analysis record and answers its key.
Result<ItrKey> addAnalysis(const std::string& name, std::int32_t typeCode, ModelDatabase& database);

/// Adds the S-N curves, load functions and fatigue definitions of a project deck with their result analyses,
/// inside the open transaction. The deck's references must have been checked; `analysisKeys` has its analyses
/// by name.
Result<void> addFatigueRecords(const ProjectDeck& deck, const std::map<std::string, ItrKey>& analysisKeys,
                               ModelDatabase& database);

} // namespace workbench
