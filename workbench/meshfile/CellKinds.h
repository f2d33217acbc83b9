#pragma once

#include "host/ElementTypes.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace workbench {

/// How a cell of a mesh file becomes an element of the host.
struct CellKind {
    int code;          ///< the file format's own
    std::size_t nodes; ///< of the cell; those that `order` does not name are left out
    ElementType type;
    std::span<const std::uint8_t> order; ///< node i of the element is node order[i] of the cell
};

/// Null for kinds that have no place in the host.
const CellKind* findVtkCell(int code, std::size_t nodes);
const CellKind* findGmshCell(int code);

/// Turns a wedge over, so that its first triangle becomes its second: some programs write one with the normal
/// of the first triangle pointing inwards, as the host has it, others outwards.
std::span<const std::uint8_t> turnedWedge(ElementType type);

} // namespace workbench
