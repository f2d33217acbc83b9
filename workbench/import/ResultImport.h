#pragma once

#include "resultfile/ResultFile.h"
#include "workbench/import/FrdReader.h"
#include "workbench/import/NumberIndex.h"
#include "workbench/import/ResultMap.h"
#include "workbench/import/ResultRows.h"
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

/// Writes the blocks of a solver's result file into a result file of ours: a case for each step of the deck,
/// a step for each of its increments or modes, tables in the order of the mesh's nodes or element corners.
/// What the solver made of shells, plane elements and beams is brought back to the elements of the deck.
class ResultImport final : public FrdSink {
  public:
    /// `caseNames` has a name for each of the deck's `steps`. Everything given must outlive the object; the
    /// writer has its mesh already. `progress` takes the part of the file that is read, 0 to 1.
    ResultImport(resultfile::Writer& writer, const ResultMesh& mesh, std::span<const SolverStep> steps,
                 std::span<const std::string> caseNames, std::string fileName,
                 std::function<void(double)> progress);

    Result<void> meshNodes(const FrdBlock& nodes) override;
    Result<void> meshElement(const FrdElement& element) override;
    bool wantsElementNodes() const override { return expanded_.expects(); }
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
        resultfile::Location location;
        std::vector<std::uint32_t> positions;
    };

    Result<void> beginCasesUpTo(std::size_t count);
    Result<void> beginStep(const FrdBlock& block);
    std::string stepName(const FrdBlock& block) const;
    /// Finds which rows belong to which items, unless they are those of the block before.
    Result<void> placeRows(const FrdBlock& block);
    Result<void> nameItems(std::string& name, resultfile::Location location,
                           std::span<const std::uint32_t> positions, std::size_t all);
    Result<void> writeBlock(const FrdBlock& block, const ResultMapRow& row);
    /// Turns tensors that stand in the axes of orientations into global ones.
    void turnToGlobal(FrdBlock& block);
    bool orientationAxes(const RowOrientation& at, double axes[3][3]);
    Result<void> writeAtNodes(const FrdBlock& block, const ResultMapRow& row, const NodeRows& rows);
    Result<void> writeTensors(const FrdBlock& block, const ResultMapRow& row);
    Result<void> writeFamily(const FrdBlock& block, const ResultMapRow& row, const ResultFamily& family,
                             const NodeRows& rows);
    /// Tensors at the corners of plates or membranes, turned into the axes of each element. `upperShare` 0 is
    /// the lower face, 1 the upper one, 0.5 the mean.
    Result<void> writeCorners(const FrdBlock& block, const ResultMapRow& row, const ResultFamily& family,
                              const CornerRows& rows, double upperShare);
    Result<void> writeParts(const FrdBlock& block, const ResultMapRow& row, const ResultFamily& family,
                            resultfile::Location location, const std::string& items);
    Result<void> writeDerived(const FrdBlock& block, const ResultMapRow& row, unsigned id,
                              resultfile::Location location, const std::string& items,
                              std::span<const unsigned> kept);
    const double (*axesOf(std::size_t element))[3];
    bool layered() const { return !mesh_.elementLayers.empty(); }
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

    ExpandedMesh expanded_;
    bool meshComplete_ = false;
    std::vector<std::int32_t> lastNodes_; ///< nodes of the last block, whose rows are known
    ResultRows rows_;
    std::vector<ItemList> itemLists_;
    std::vector<std::vector<float>> space_;      ///< of component tables that are put together
    std::vector<std::span<const float>> tables_; ///< components of the items at hand
    std::vector<float> derived_;
    double axes_[3][3] = {};

    std::vector<std::string> warnedKeys_;
    std::vector<std::string> warnings_;
};

/// The derived result of one node from its components (three of a vector, six of a tensor xx, yy, zz, xy, yz,
/// zx).
double deriveResult(DerivedResult kind, const double* components);

} // namespace workbench
