#pragma once

#include "host/ElementTypes.h"

#include <array>
#include <filesystem>
#include <vector>

/// A kind of cell that a library knows, with the library's own places of its nodes.
struct ReferenceCell {
    int code;
    ElementType type; ///< what it must become
    std::vector<std::array<double, 3>> nodes;
};

/// Each kind once, beside each other.
std::vector<ReferenceCell> gmshReferenceCells();
std::vector<ReferenceCell> vtkReferenceCells();

/// Files with these cells, written by the libraries. Every cell has the number of its position plus 1 as
/// "PhysicalIds" or physical group; there are a point array "temperature" with the x of each node, and a cell
/// array "energy" with the number of each cell.
void writeGmshCells(const std::filesystem::path& file, double version, bool binary);
enum class VtkForm { XmlText, XmlBinary, XmlAppended, LegacyText, LegacyBinary };
void writeVtkCells(const std::filesystem::path& file, VtkForm form);

/// A box of second-order tetrahedra that gmsh meshes itself, with the physical groups "body" and "left".
void writeGmshBox(const std::filesystem::path& file);
