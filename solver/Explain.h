#pragma once

#include "solver/FatigueRun.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>

namespace solver {

/// Shows how the result of one node comes about: its worst cycles and sums to `out`, every counted cycle in
/// STEM_cycles.csv, the counted history in STEM_history.svg and the rainflow matrix in STEM_matrix.svg. The
/// pictures are of the correction with the largest damage. Without a stem the files are named node_NODE, in
/// the folder of the interface file. Each file appears whole or not at all.
std::optional<RunFailure> explainNode(const RunSettings& settings, std::int32_t node,
                                      const std::optional<std::filesystem::path>& stem, std::ostream& out);

} // namespace solver
