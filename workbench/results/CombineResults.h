#pragma once

#include "host/GpsLinearCombCalculator.h"
#include "workbench/document/ModelDatabase.h"
#include "workbench/results/CombinationPlan.h"
#include "workbench/results/ResultTree.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace workbench {

struct CombinationRequest {
    std::string name; ///< of the result set, UTF-8
    CombinationKind kind = CombinationKind::Linear;
    bool merge = false;     ///< a set of that name keeps its cases and gets another one
    ItrKey analysisKey = 0; ///< whose results are combined
    std::vector<CombinationItem> items;
};

/// A result set that was made.
struct CombinationReport {
    struct Step {
        std::string name;
        double value = 0;
    };
    std::string name; ///< of the set
    std::string caseName;
    std::filesystem::path file;
    std::vector<Step> steps;
    std::vector<unsigned> components;  ///< of any step, ascending
    std::vector<std::string> sources;  ///< what was combined; governing items hold their numbers
    std::uint32_t firstSource = 1;     ///< number of the first one
    std::vector<std::string> warnings; ///< what was left out or restricted
};

/// The request that a caller of the host's calculator makes, checked. Objects that are not in the tree (any
/// more) are refused without being looked into.
Result<CombinationRequest> combinationRequest(const ResultTree& tree, const T_COMB_ENVL_RESULT_D& request);

/// The file of the result set with that name beside the document in `folder`.
std::filesystem::path combinationFile(const std::filesystem::path& folder, const std::string& name);

/// Computes a combination and writes its result set. With `registerSet` it becomes an analysis of the
/// document of that name, or replaces or extends the one that the document has; the document is not saved,
/// and other objects of the tree stay. `progress` hears 0 to 1. Refused are names that cannot be file names,
/// that another result file or analysis has, and results whose file is gone. Nothing is left behind after a
/// failure.
Result<CombinationReport> combineResults(ModelDatabase& database, ResultTree& tree,
                                         const std::filesystem::path& folder,
                                         const CombinationRequest& request, bool registerSet,
                                         const std::function<void(double)>& progress = {});

} // namespace workbench
