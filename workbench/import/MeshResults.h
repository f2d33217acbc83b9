#pragma once

#include "resultfile/ResultFile.h"
#include "workbench/import/FieldRows.h"
#include "workbench/import/FieldTargets.h"
#include "workbench/import/MeshModel.h"
#include "workbench/import/ResultImport.h"
#include "workbench/import/ResultMap.h"

#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace workbench {

/// Writes the point and cell arrays of a mesh file into a result file of ours: one case with a step for each
/// time. Point arrays become tables at nodes, cell arrays tables at element corners; tensors of plates and
/// membranes stand at corners in the axes of their element. Values that are not finite count as missing.
class MeshResults {
  public:
    /// `mesh` is the document's, which has the nodes and elements of the model's deck. Everything given must
    /// outlive the object; the writer has its mesh already.
    MeshResults(resultfile::Writer& writer, const ResultMesh& mesh, const MeshModel& model,
                std::span<const DeckField> rules, std::string fileName);

    /// Writes everything. Fails on a rule for an array that is not there or has another shape.
    Result<void> write(const std::string& caseName, const std::function<void(double)>& progress);

    const std::vector<ImportedCase>& cases() const { return cases_; }
    const std::vector<std::string>& warnings() const { return warnings_; }

  private:
    using Location = resultfile::Location;

    Result<void> checkRules() const;
    Result<void> chooseTargets();
    Result<void> beginStep(double time);
    Result<void> writeField(std::size_t field);
    bool takeResult(unsigned id, const FieldHeader& header);
    Result<void> writePlain(const FieldTarget& target, const FieldValues& values, const FieldRows& rows);
    Result<void> writeTensor(const FieldTarget& target, const FieldValues& values, const FieldRows& rows);
    Result<void> writeFamily(const FieldTarget& target, const ResultFamily& family, const FieldRows& rows,
                             const FieldValues& values, bool isTurned);
    /// Turns the tensors of the tables from global axes into those of their elements.
    void turnToElements(const FieldRows& rows);
    Result<void> writeDerived(DerivedResult kind, unsigned id, const FieldRows& rows,
                              const std::string& items, std::span<const unsigned> kept);
    Result<std::string> nameItems(const FieldRows& rows);
    void warnOnce(const std::string& key, const std::string& text);

    resultfile::Writer& writer_;
    ResultMesh mesh_;
    const MeshModel& model_;
    std::span<const DeckField> rules_;
    std::string fileName_;

    std::vector<FieldTarget> targets_;       ///< of each array
    std::map<unsigned, std::string> taken_;  ///< results of the step, with the array that gives them
    std::string current_;                    ///< the array at hand, for messages
    std::vector<std::vector<float>> tables_; ///< its components
    std::uint32_t tensorComponents_ = 6;     ///< of the array, where it is a tensor
    std::vector<float> derived_;
    std::map<std::pair<Location, std::vector<std::uint32_t>>, std::string> itemLists_;
    std::vector<ImportedCase> cases_;
    std::vector<std::string> warnings_;
    std::set<std::string> warned_;
};

} // namespace workbench
