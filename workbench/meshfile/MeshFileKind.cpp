#include "workbench/meshfile/MeshFileKind.h"

#include <string>

namespace workbench {

std::optional<MeshFileKind> meshFileKind(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    for (char& c : extension)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (extension == ".vtu") return MeshFileKind::VtkXml;
    if (extension == ".vtk") return MeshFileKind::VtkLegacy;
    if (extension == ".msh") return MeshFileKind::Gmsh;
    return std::nullopt;
}

} // namespace workbench
