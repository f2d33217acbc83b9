#pragma once

#include "base/Result.h"
#include "resultfile/ResultFile.h"
#include "solver/Definition.h"
#include "solver/Evaluation.h"
#include "solver/SpooledColumn.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace solver {

/// Gathers the results of all nodes, in order, and makes the result file of them.
class ResultColumns {
  public:
    /// Temporary files go into the folder of the result file, so that a folder that cannot be written is
    /// found out before the work.
    static Result<ResultColumns> create(const std::filesystem::path& resultFile, const Definition& definition,
                                        const EvaluationPlan& plan);

    /// A node and its outcomes, one for each correction of the plan; none when the node has no material.
    Result<void> append(std::int32_t node, std::span<const Outcome> outcomes);

    /// Writes the result file and uses the columns up. Nothing shows under the file's name before it is
    /// whole.
    Result<void> write(const std::string& inputChecksum, const std::string& producer) &&;

    std::size_t nodes() const { return nodes_; }
    std::size_t nodesWithResults() const { return nodesWithResults_; }

  private:
    /// One component: which value of which correction, under which identifier.
    struct Column {
        unsigned id;
        std::size_t correction; ///< index into the plan's corrections
        double (*value)(const Outcome&);
        SpooledColumn<float> values;
    };

    ResultColumns(std::filesystem::path resultFile, double blocks, SpooledColumn<std::int32_t> numbers,
                  SpooledColumn<std::uint32_t> positions);

    Result<void> giveMesh(resultfile::Writer& writer);
    Result<void> giveItems(resultfile::Writer& writer, const std::string& name);

    std::filesystem::path resultFile_;
    double blocks_;
    std::size_t nodes_ = 0;
    std::size_t nodesWithResults_ = 0;
    SpooledColumn<std::int32_t> numbers_;
    SpooledColumn<std::uint32_t> positions_; ///< of the nodes with results
    std::vector<Column> columns_;            ///< ascending by id
};

} // namespace solver
