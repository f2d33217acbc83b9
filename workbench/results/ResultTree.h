#pragma once

#include "host/POHTree.h"
#include "workbench/document/ModelDatabase.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace workbench {

/// The results database of a document: its analyses with the cases and steps of their registered result
/// files. A file that cannot be read is named in the error output and leaves its analysis without cases.
class ResultTree final : public CPOHManager {
  public:
    /// Both must outlive the tree. Relative paths of result files start at `folder`.
    ResultTree(ModelDatabase& database, std::filesystem::path folder);
    ~ResultTree() override;

    /// Reads the registrations anew; every object of the tree from before is gone.
    void rebuild();

    ItrKey GetKey() const override { return 0; }
    const std::wstring& GetName() const override;
    CPOHBase* GetParent() const override { return nullptr; }
    const std::vector<CPOHAnalysis*>& GetChildList() const override { return children_; }
    CPOHAnalysis* GetChild(ItrKey key) const override;

    /// Number of registered files that could not be read at the last rebuild.
    int unreadableFiles() const { return unreadable_; }

  private:
    class Analysis;
    ModelDatabase& database_;
    std::filesystem::path folder_;
    std::vector<std::unique_ptr<Analysis>> analyses_;
    std::vector<CPOHAnalysis*> children_;
    int unreadable_ = 0;
};

} // namespace workbench
