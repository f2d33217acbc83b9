#pragma once

#include "base/Result.h"

#include <filesystem>
#include <string>
#include <vector>

namespace workbench::cli {

/// Has vexa-desktop, beside this program, work without a display with these arguments, and waits for its end.
/// What it has to say goes to the standard error output.
Result<void> runDesktop(const std::vector<std::string>& arguments);

/// A file of a name of its own in the folder for temporary files, which goes with the object.
class TemporaryText {
  public:
    explicit TemporaryText(
        const std::string& text); ///< throws std::runtime_error where nothing can be written
    ~TemporaryText();
    TemporaryText(const TemporaryText&) = delete;
    TemporaryText& operator=(const TemporaryText&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

} // namespace workbench::cli
