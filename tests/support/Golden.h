#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstdlib>

/// Keeps what a build has written under `name` in the folder that VEXA_GOLDEN_FOLDER names, for
/// scripts/compare-builds, which holds the builds for two systems against each other. The name's ending tells
/// how: ".76" record by record, ".f64" as doubles, ".txt" and ".csv" as text with the system's line ends, all
/// else byte by byte.
inline void keepGolden(const std::string& name, std::string_view bytes) {
    const char* folder = std::getenv("VEXA_GOLDEN_FOLDER");
    if (!folder) return;
    const std::filesystem::path path = pathOf(folder) / pathOf(name);
    std::filesystem::create_directories(path.parent_path());
    writeBytes(path, bytes);
}

/// Works in a folder until the object goes, so that what is written holds no path of this machine.
class WorkingFolder {
  public:
    explicit WorkingFolder(const std::filesystem::path& folder)
        : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~WorkingFolder() { std::filesystem::current_path(before_); }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

  private:
    std::filesystem::path before_;
};
