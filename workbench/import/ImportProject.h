#pragma once

#include "base/Result.h"
#include "workbench/import/ResultImport.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace workbench {

/// What an import is doing, and how much of the whole is done, 0 to 1.
using ImportProgress = std::function<void(const std::string& what, double fraction)>;

struct ImportedAnalysis {
    std::string name;
    std::filesystem::path resultFile;
    std::vector<ImportedCase> cases;
};

struct ImportReport {
    std::uint64_t nodeCount = 0;
    std::uint64_t elementCount = 0;
    std::vector<ImportedAnalysis> analyses;
    std::vector<std::string> fatigueNames;
    std::vector<std::string> warnings; ///< each names file and line, or the item
};

/// Makes a document from a project deck: reads the solver decks and results that it names, writes the
/// document to `modelPath` and, beside it, a result file "<model>_<analysis>.lmop" for each analysis. On
/// failure nothing of it stands under those names; what stood there before stays.
Result<ImportReport> importProject(const std::filesystem::path& deckPath,
                                   const std::filesystem::path& modelPath,
                                   const ImportProgress& progress = {});

} // namespace workbench
