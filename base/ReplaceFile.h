#pragma once

#include "base/Result.h"

#include <filesystem>
#include <string>

/// A file that appears under its name whole or not at all: write to `temporaryPath()` beside it, then commit.
/// Without commit the temporary file is removed when the object goes. A link is followed; a target that is no
/// ordinary file (a folder, a device) is never replaced.
class ReplacedFile {
  public:
    /// The temporary name is `target` + ".part-" + process id, in the same folder. Nothing is created yet.
    explicit ReplacedFile(std::filesystem::path target);
    ~ReplacedFile();
    ReplacedFile(ReplacedFile&& other) noexcept;
    ReplacedFile& operator=(ReplacedFile&&) = delete;

    const std::filesystem::path& target() const { return target_; }
    const std::filesystem::path& temporaryPath() const { return temporary_; }

    /// Flushes the temporary file to the disk and renames it to the target. The writer must have closed it.
    Result<void> commit();

  private:
    std::filesystem::path target_;
    std::filesystem::path temporary_;
};

/// The system's sentence for an errno value, without a locale.
std::string systemErrorText(int errorNumber);
