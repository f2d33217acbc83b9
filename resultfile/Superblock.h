#pragma once

#include "base/Result.h"

#include <cstdint>
#include <filesystem>

namespace resultfile {

/// What the first bytes of the file say.
struct Superblock {
    std::uint64_t fileSize = 0; ///< as the file system has it, at least what the superblock asks for
};

/// Looks at the file before HDF5 does: it must be a regular, whole HDF5 file of superblock version 2 or 3,
/// whose structure carries checksums (HDF5 File Format Specification 3.0, II.A). Older structures carry none,
/// so that damage there would reach HDF5's decoder.
Result<Superblock> checkSuperblock(const std::filesystem::path& path);

} // namespace resultfile
