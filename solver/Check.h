#pragma once

#include "solver/FatigueRun.h"

#include <optional>
#include <ostream>

namespace solver {

/// Reads the interface file to its last byte and checks whatever can be checked without evaluating a node:
/// everything that InterfaceReader refuses, the text of the result's name, and that the definition can be
/// evaluated. Tells `out` what the file holds; nothing when it is refused. Writes no file.
std::optional<RunFailure> checkInterfaceFile(const RunSettings& settings, std::ostream& out);

} // namespace solver
