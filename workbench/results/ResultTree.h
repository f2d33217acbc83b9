#pragma once

#include "host/POHTree.h"
#include "workbench/document/ModelDatabase.h"
#include "workbench/results/ResultSource.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace workbench {

/// A step of the tree, for whoever reads its tables in pieces.
class ResultStep : public CPOHVCase {
  public:
    virtual ResultSource& source() const = 0;
    virtual std::size_t caseIndex() const = 0; ///< in the file of the source
    virtual std::size_t stepIndex() const = 0;
    /// What the file holds for the step.
    const resultfile::Step& stored() const {
        return source().reader().contents().cases[caseIndex()].steps[stepIndex()];
    }
};

/// The results database of a document: its analyses with the cases and steps of their registered result
/// files. A file that cannot be read is named in the error output and leaves its analysis without its cases.
class ResultTree final : public CPOHManager {
  public:
    /// Both must outlive the tree. Relative paths of result files start at `folder`.
    ResultTree(ModelDatabase& database, std::filesystem::path folder);
    ~ResultTree() override;

    /// Reads the registrations anew; every object of the tree from before is gone.
    void rebuild();
    /// Reads new and changed registrations; objects of the tree under other analyses stay.
    void update();

    ItrKey GetKey() const override { return 0; }
    const std::wstring& GetName() const override;
    CPOHBase* GetParent() const override { return nullptr; }
    const std::vector<CPOHAnalysis*>& GetChildList() const override { return children_; }
    CPOHAnalysis* GetChild(ItrKey key) const override;

    /// What the results of an analysis were combined from, in the order of their numbers; empty for others.
    std::vector<std::string> sourcesOf(ItrKey analysisKey) const;

    /// Number of registered files that could not be read at the last rebuild.
    int unreadableFiles() const { return unreadable_; }

  private:
    class Analysis;
    void readAnalyses(std::vector<std::unique_ptr<Analysis>> former);
    ModelDatabase& database_;
    std::filesystem::path folder_;
    std::vector<std::unique_ptr<Analysis>> analyses_;
    std::vector<CPOHAnalysis*> children_;
    int unreadable_ = 0;
};

} // namespace workbench
