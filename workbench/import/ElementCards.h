#pragma once

#include "host/ElementTypes.h"

#include <optional>
#include <string_view>

namespace workbench {

/// What an element stands for in the solver, and with it which results it has.
enum class ElementFamily : std::uint8_t {
    Solid,
    Plate,
    Membrane,
    PlaneStress,
    PlaneStrain,
    Axisymmetric,
    Line,      ///< beams and trusses: no stress results
    Connector, ///< springs, dampers, gaps and masses: likewise
};

/// The solver computes these as solids that it makes of them, and may store those in their place.
constexpr bool isExpanded(ElementFamily family) {
    return family != ElementFamily::Solid && family != ElementFamily::Connector;
}

struct ElementCard {
    ElementType type;
    ElementFamily family;
};

/// The host's element type and the family of a CalculiX type name (upper case). Nothing for types that are
/// not read. The order of nodes is the same on both sides for all of them.
std::optional<ElementCard> elementCard(std::string_view type);

/// The host's code for the properties of a family.
int propertyTypeOf(ElementFamily family);

} // namespace workbench
