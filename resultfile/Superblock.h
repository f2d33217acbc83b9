#pragma once

#include "resultfile/FileDriver.h"

#include <string>

namespace resultfile {

/// Looks at the file before HDF5 does: it must be a regular, whole HDF5 file of superblock version 2 or 3,
/// whose structure carries checksums (HDF5 File Format Specification 3.0, II.A). Older structures carry none,
/// so that damage there would reach HDF5's decoder. The root group is looked at as well. The reason why it is
/// unusable; empty when it is not.
std::string superblockFault(hdf5::OpenFile& file);

} // namespace resultfile
