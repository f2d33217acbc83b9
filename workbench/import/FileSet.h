#pragma once

#include "base/Result.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace workbench {

/// Files that appear together: as long as keep() has not been called, the destructor puts back what stood
/// under their names before, or removes them where nothing did. At every moment each name holds the old or
/// the new file, whole.
class FileSet {
  public:
    FileSet() = default;
    ~FileSet();
    FileSet(const FileSet&) = delete;
    FileSet& operator=(const FileSet&) = delete;

    /// Calls `replace`, which puts a new file under `path` in one move, and remembers how to undo it.
    Result<void> add(const std::filesystem::path& path, const std::function<Result<void>()>& replace);
    void keep();

  private:
    struct Entry {
        std::filesystem::path path;
        std::filesystem::path before; ///< second name of the old file; empty when there was none
    };
    std::vector<Entry> entries_;
};

} // namespace workbench
