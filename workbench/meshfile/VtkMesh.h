#pragma once

#include "base/Result.h"
#include "workbench/meshfile/MeshStream.h"

#include <string>

namespace workbench {

/// Reads an unstructured grid through VTK: XML (`isXml`) or legacy, text or binary. To be called in a process
/// that may break off: VTK trusts its files. Messages do not name the file.
Result<void> readVtkMesh(const std::string& path, bool isXml, MeshStreamWriter& out);

} // namespace workbench
