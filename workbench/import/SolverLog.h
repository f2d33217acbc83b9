#pragma once

#include <filesystem>
#include <string>

namespace workbench {

/// What the files that the solver left beside its results tell about a run that failed: the last error of its
/// log ("JOB.log", where its output was kept) and how far it came ("JOB.sta"). As text to append to a
/// message,
/// "; ...", empty when the files tell nothing.
std::string solverLastWords(const std::filesystem::path& results);

} // namespace workbench
