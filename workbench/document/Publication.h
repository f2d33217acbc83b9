#pragma once

#include "base/Result.h"
#include "workbench/document/ModelDatabase.h"

#include <filesystem>
#include <vector>

namespace workbench {

/// A new document that appears together with its result files. Each of them is written under a name that
/// nobody refers to; the renaming of the document, which names them, makes them current. So whatever is cut
/// short leaves the old document with its old files or the new one with its new files. Then the new files get
/// the names that were wanted for them, the document with them, and what only the old document referred to
/// goes.
class Publication {
  public:
    explicit Publication(std::filesystem::path document)
        : document_(std::move(document)) {}
    /// Without commit the files that were added go.
    ~Publication();
    Publication(const Publication&) = delete;
    Publication& operator=(const Publication&) = delete;

    /// A complete result file in the document's folder that nobody refers to yet, registered in the database
    /// under `key` by its file name, and the name that is wanted for it. Its writer must live until the
    /// commit is over.
    void add(ItrKey key, const std::filesystem::path& file, const std::filesystem::path& wanted);

    /// Saves the document. Afterwards file() tells where each added file stands.
    Result<void> commit(ModelDatabase& database);

    const std::filesystem::path& file(std::size_t index) const { return files_[index].path; }

  private:
    struct File {
        ItrKey key;
        std::filesystem::path path;
        std::filesystem::path wanted;
    };
    void settleNames(ModelDatabase& database);
    void removeFormer() const;

    std::filesystem::path document_;
    std::vector<File> files_;
    std::vector<std::filesystem::path> former_; ///< result files of the document that is replaced
    bool committed_ = false;
};

} // namespace workbench
