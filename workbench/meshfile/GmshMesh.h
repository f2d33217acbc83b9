#pragma once

#include "base/Result.h"
#include "workbench/meshfile/MeshStream.h"

#include <string>

namespace workbench {

/// Reads a mesh of gmsh (MSH 2 and 4, text or binary) with its physical groups and data through gmsh. To be
/// called in a process that may break off: gmsh trusts its files. Messages do not name the file.
Result<void> readGmshMesh(const std::string& path, MeshStreamWriter& out);

} // namespace workbench
