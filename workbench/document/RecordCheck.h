#pragma once

#include "workbench/document/Finding.h"
#include "workbench/document/ModelDatabase.h"

namespace workbench {

/// Checks the records of a document: what they refer to exists, their numbers are finite and in order, and
/// fatigue definitions can be run and share nothing that a run replaces. Numbers of mesh sets are looked up
/// when the mesh is loaded. Results are not looked at.
Findings checkRecords(ModelDatabase& database);

} // namespace workbench
