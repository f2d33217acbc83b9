#pragma once

#include <cstdint>

namespace workbench {

/// The descriptor that vexa-read-mesh writes to.
inline constexpr int kMeshOutput = 3;

/// How much memory the reading of a file may take: compressed and text files grow when they are read.
inline constexpr std::uint64_t meshMemoryLimit(std::uint64_t fileBytes) {
    return (std::uint64_t{2} << 30) + 64 * fileBytes;
}

} // namespace workbench
