#pragma once

#include "resultfile/FileDriver.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace resultfile {

/// The checksum of HDF5's structure: lookup3 of B. Jenkins (2006), "hashlittle" with initial value 0.
std::uint32_t lookup3(std::span<const std::byte> bytes);

/// Whether the object header at `address` and its continuations are of version 2, match their checksums and
/// hold only what the Writer puts there (HDF5 File Format Specification 3.0, IV.A.1.b). HDF5 checks the
/// checksums as well, but version 1.10 does not let go of a file in which it could not open an object, and
/// its decoders of the less usual structures trust what they read.
bool headerIntact(hdf5::OpenFile& file, std::uint64_t fileSize, std::uint64_t address);

} // namespace resultfile
