#pragma once

#include "base/Result.h"
#include "host/records/Fatigue.h"
#include "workbench/results/Catalogue.h"
#include "workbench/session/Document.h"

#include <cstdint>
#include <string>
#include <vector>

namespace workbench::cli {

/// Damage or life at every node, by one mean-stress correction. NaN where a node has none.
struct FatigueColumn {
    unsigned id;
    unsigned correction; ///< position in resultfile::fatigue::kCorrections
    bool damage;         ///< else life in blocks
    std::vector<float> values;
};

/// The result of one fatigue definition.
struct FatigueResult {
    std::string definition;
    std::string resultAnalysis;
    std::string measure;
    std::vector<FatigueColumn> columns; ///< by correction, damage before life; never empty
};

Result<FatigueResult> readFatigueResult(Document& document, const tagTFatg& definition, Language language);

/// Mesh positions of the nodes with the largest damage by any correction (the shortest life where the result
/// holds no damage), worst first.
std::vector<std::uint32_t> mostDamagedNodes(const FatigueResult& result, std::size_t count);

/// The values at some nodes as a table for people.
std::string nodeTable(const FatigueResult& result, const T_QM_MESH_D& mesh,
                      const std::vector<std::uint32_t>& nodes, Language language);

/// Several results side by side: for each correction the shortest life and its node, or the largest damage
/// where a result holds no life.
std::string comparisonTable(const std::vector<FatigueResult>& results, const T_QM_MESH_D& mesh,
                            Language language);

} // namespace workbench::cli
