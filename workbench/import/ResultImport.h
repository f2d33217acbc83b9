#pragma once

#include "resultfile/ResultFile.h"
#include "workbench/import/FrdReader.h"
#include "workbench/import/NumberIndex.h"
#include "workbench/import/ResultMap.h"
#include "workbench/import/SolverDeck.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace workbench {

/// A case of an imported result file and the names of its steps.
struct ImportedCase {
    std::string name;
    std::vector<std::string> steps;
};

/// The deck's side of a result file. What the spans show must outlive whoever uses them.
struct ResultMesh {
    std::span<const std::int32_t> nodeNumbers;     ///< ascending
    std::span<const std::int32_t> elementNumbers;  ///< ascending
    std::span<const std::int32_t> leftOutElements; ///< ascending; elements of types that are not read
};

/// Writes the blocks of a solver's result file into a result file of ours: a case for each step of the deck,
/// a step for each of its increments or modes, tables in the order of the mesh's nodes.
class ResultImport final : public FrdSink {
  public:
    /// `caseNames` has a name for each of the deck's `steps`. Everything given must outlive the object; the
    /// writer has its mesh already. `progress` takes the part of the file that is read, 0 to 1.
    ResultImport(resultfile::Writer& writer, const ResultMesh& mesh, std::span<const SolverStep> steps,
                 std::span<const std::string> caseNames, std::string fileName,
                 std::function<void(double)> progress);

    Result<void> meshNodes(const FrdBlock& nodes) override;
    Result<void> meshElement(const FrdElement& element) override;
    bool wants(const FrdBlock& header) override;
    Result<void> block(FrdBlock& block, std::uint64_t done, std::uint64_t total) override;

    /// To be called after the last block: writes the cases that are left and checks that steps which ask for
    /// results have some.
    Result<void> finish();

    const std::vector<ImportedCase>& cases() const { return cases_; }
    const std::vector<std::string>& warnings() const { return warnings_; }

  private:
    struct StepKey {
        int step = 0, increment = 0, mode = 0;
        double value = 0;
        bool operator==(const StepKey&) const = default;
    };
    struct ItemList {
        std::string name;
        std::vector<std::uint32_t> positions;
    };

    Result<void> beginCasesUpTo(std::size_t count);
    Result<void> beginStep(const FrdBlock& block);
    std::string stepName(const FrdBlock& block) const;
    /// Finds the mesh positions of the block's nodes and brings its rows into their order.
    Result<void> placeNodes(FrdBlock& block);
    Result<void> chooseItems();
    Result<void> writeTables(const FrdBlock& block, const ResultMapRow& row);
    void deriveTable(const FrdBlock& block, const ResultMapRow& row);
    void warnOnce(const std::string& key, const std::string& text);

    resultfile::Writer& writer_;
    ResultMesh mesh_;
    std::span<const SolverStep> steps_;
    std::span<const std::string> caseNames_;
    std::string fileName_;
    std::function<void(double)> progress_;
    NumberIndex nodes_;

    std::vector<ImportedCase> cases_;
    StepKey current_;
    std::vector<unsigned> idsOfStep_;

    std::vector<std::int32_t> lastNodes_; ///< nodes of the last block, whose positions are known
    std::vector<std::uint32_t> positions_;
    std::vector<std::uint32_t> order_; ///< rows of the block by mesh position; empty when they are so already
    std::vector<ItemList> itemLists_;
    std::string items_; ///< list that the block follows; empty: all nodes
    std::vector<float> derived_;

    std::vector<std::string> warnedKeys_;
    std::vector<std::string> warnings_;
};

/// The derived result of one node from its components (three of a vector, six of a tensor xx, yy, zz, xy, yz,
/// zx).
double deriveResult(DerivedResult kind, const double* components);

} // namespace workbench
