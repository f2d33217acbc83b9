#pragma once

#include "host/PostFileManager.h"
#include "workbench/document/ModelDatabase.h"
#include "workbench/results/ResultTree.h"

#include <filesystem>

namespace workbench {

/// Registers result files that other programs computed from this document. It accepts a file only when it
/// belongs to the document's mesh and was computed from the fatigue interface file that lies beside the model
/// now, so that what a failed or foreign run left behind never becomes somebody's result.
class PostFileManager final : public CPostFileManager {
  public:
    PostFileManager(ModelDatabase& database, ResultTree& tree, std::filesystem::path folder)
        : database_(database)
        , tree_(tree)
        , folder_(std::move(folder)) {}

    int AddFile(const std::wstring& path, ItrKey analysisKey, int flag) override;

  private:
    Result<void> registerFile(const std::filesystem::path& path, ItrKey analysisKey, bool replace);

    ModelDatabase& database_;
    ResultTree& tree_;
    std::filesystem::path folder_;
};

/// Checksum of the fatigue interface file in `folder`, as the solver stores it in its result.
Result<std::string> interfaceFileChecksum(const std::filesystem::path& folder);

} // namespace workbench
