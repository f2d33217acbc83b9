#pragma once

#include <filesystem>
#include <optional>

namespace workbench {

enum class MeshFileKind { VtkXml, VtkLegacy, Gmsh };

/// By the extension: .vtu, .vtk or .msh in any letter case. Nothing for other files.
std::optional<MeshFileKind> meshFileKind(const std::filesystem::path& path);

inline bool isMeshFile(const std::filesystem::path& path) {
    return meshFileKind(path).has_value();
}

} // namespace workbench
