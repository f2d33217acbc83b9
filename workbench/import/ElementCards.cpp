#include "workbench/import/ElementCards.h"

#include "host/records/Material.h"

#include <algorithm>

namespace workbench {
namespace {

struct Row {
    std::string_view name;
    ElementType type;
    ElementFamily family;
};

/// With the reduced, incompatible-mode and heat-transfer forms.
constexpr Row kRows[] = {
    {"C3D4", ElementType::Tet4, ElementFamily::Solid},
    {"C3D6", ElementType::Wedge6, ElementFamily::Solid},
    {"C3D8", ElementType::Hex8, ElementFamily::Solid},
    {"C3D8I", ElementType::Hex8, ElementFamily::Solid},
    {"C3D8R", ElementType::Hex8, ElementFamily::Solid},
    {"C3D10", ElementType::Tet10, ElementFamily::Solid},
    {"C3D10T", ElementType::Tet10, ElementFamily::Solid},
    {"C3D15", ElementType::Wedge15, ElementFamily::Solid},
    {"C3D20", ElementType::Hex20, ElementFamily::Solid},
    {"C3D20R", ElementType::Hex20, ElementFamily::Solid},
    {"C3D20RI", ElementType::Hex20, ElementFamily::Solid},
    {"DC3D4", ElementType::Tet4, ElementFamily::Solid},
    {"DC3D6", ElementType::Wedge6, ElementFamily::Solid},
    {"DC3D8", ElementType::Hex8, ElementFamily::Solid},
    {"DC3D10", ElementType::Tet10, ElementFamily::Solid},
    {"DC3D15", ElementType::Wedge15, ElementFamily::Solid},
    {"DC3D20", ElementType::Hex20, ElementFamily::Solid},
    {"S3", ElementType::Tri3, ElementFamily::Plate},
    {"S4", ElementType::Quad4, ElementFamily::Plate},
    {"S4R", ElementType::Quad4, ElementFamily::Plate},
    {"S6", ElementType::Tri6, ElementFamily::Plate},
    {"S8", ElementType::Quad8, ElementFamily::Plate},
    {"S8R", ElementType::Quad8, ElementFamily::Plate},
    {"M3D3", ElementType::Tri3, ElementFamily::Membrane},
    {"M3D4", ElementType::Quad4, ElementFamily::Membrane},
    {"M3D4R", ElementType::Quad4, ElementFamily::Membrane},
    {"M3D6", ElementType::Tri6, ElementFamily::Membrane},
    {"M3D8", ElementType::Quad8, ElementFamily::Membrane},
    {"M3D8R", ElementType::Quad8, ElementFamily::Membrane},
    {"CPS3", ElementType::Tri3, ElementFamily::PlaneStress},
    {"CPS4", ElementType::Quad4, ElementFamily::PlaneStress},
    {"CPS4R", ElementType::Quad4, ElementFamily::PlaneStress},
    {"CPS6", ElementType::Tri6, ElementFamily::PlaneStress},
    {"CPS8", ElementType::Quad8, ElementFamily::PlaneStress},
    {"CPS8R", ElementType::Quad8, ElementFamily::PlaneStress},
    {"CPE3", ElementType::Tri3, ElementFamily::PlaneStrain},
    {"CPE4", ElementType::Quad4, ElementFamily::PlaneStrain},
    {"CPE4R", ElementType::Quad4, ElementFamily::PlaneStrain},
    {"CPE6", ElementType::Tri6, ElementFamily::PlaneStrain},
    {"CPE8", ElementType::Quad8, ElementFamily::PlaneStrain},
    {"CPE8R", ElementType::Quad8, ElementFamily::PlaneStrain},
    {"CAX3", ElementType::Tri3, ElementFamily::Axisymmetric},
    {"CAX4", ElementType::Quad4, ElementFamily::Axisymmetric},
    {"CAX4R", ElementType::Quad4, ElementFamily::Axisymmetric},
    {"CAX6", ElementType::Tri6, ElementFamily::Axisymmetric},
    {"CAX8", ElementType::Quad8, ElementFamily::Axisymmetric},
    {"CAX8R", ElementType::Quad8, ElementFamily::Axisymmetric},
    {"B21", ElementType::Beam, ElementFamily::Line},
    {"B31", ElementType::Beam, ElementFamily::Line},
    {"B31R", ElementType::Beam, ElementFamily::Line},
    {"B32", ElementType::Line3, ElementFamily::Line},
    {"B32R", ElementType::Line3, ElementFamily::Line},
    {"T2D2", ElementType::Line2, ElementFamily::Line},
    {"T3D2", ElementType::Line2, ElementFamily::Line},
    {"T3D3", ElementType::Line3, ElementFamily::Line},
    {"SPRING1", ElementType::Point, ElementFamily::Connector},
    {"SPRING2", ElementType::Spring, ElementFamily::Connector},
    {"SPRINGA", ElementType::Spring, ElementFamily::Connector},
    {"DASHPOTA", ElementType::Spring, ElementFamily::Connector},
    {"GAPUNI", ElementType::Spring, ElementFamily::Connector},
    {"MASS", ElementType::Point, ElementFamily::Connector},
    {"DCOUP3D", ElementType::Point, ElementFamily::Connector},
};

} // namespace

std::optional<ElementCard> elementCard(std::string_view type) {
    const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [&](const Row& candidate) { return candidate.name == type; });
    if (row == std::end(kRows)) return std::nullopt;
    return ElementCard{row->type, row->family};
}

int propertyTypeOf(ElementFamily family) {
    switch (family) {
    case ElementFamily::Solid:
        return PropertyType::Solid;
    case ElementFamily::Plate:
        return PropertyType::Shell;
    case ElementFamily::Membrane:
        return PropertyType::Membrane;
    case ElementFamily::PlaneStress:
        return PropertyType::PlaneStress;
    case ElementFamily::PlaneStrain:
        return PropertyType::PlaneStrain;
    case ElementFamily::Axisymmetric:
        return PropertyType::Axisymmetric;
    case ElementFamily::Line:
        return PropertyType::Line;
    case ElementFamily::Connector:
        break;
    }
    return PropertyType::Connector;
}

} // namespace workbench
