#pragma once

#include "base/Result.h"
#include "workbench/meshfile/MeshStream.h"

#include <chrono>
#include <filesystem>
#include <optional>

namespace workbench {

struct MeshReading {
    std::filesystem::path program; ///< empty: vexa-read-mesh in the folder of the running program
    /// Empty: a minute, and a second more for each MiB of the file.
    std::optional<std::chrono::milliseconds> timeLimit;
};

/// Reads a mesh file in a program of its own, so that bytes on which a library crashes, hangs or takes all
/// memory end that program, not this one. The failure names the file.
Result<MeshFile> readMeshFile(const std::filesystem::path& path, const MeshReading& reading = {});

} // namespace workbench
