#include "workbench/import/ElementCards.h"

#include <algorithm>

namespace workbench {
namespace {

struct Row {
    std::string_view name;
    ElementType type;
};

/// Solid elements with their reduced, incompatible-mode and heat-transfer forms.
constexpr Row kRows[] = {
    {"C3D4", ElementType::Tet4},      {"C3D6", ElementType::Wedge6},   {"C3D8", ElementType::Hex8},
    {"C3D8I", ElementType::Hex8},     {"C3D8R", ElementType::Hex8},    {"C3D10", ElementType::Tet10},
    {"C3D10T", ElementType::Tet10},   {"C3D15", ElementType::Wedge15}, {"C3D20", ElementType::Hex20},
    {"C3D20R", ElementType::Hex20},   {"C3D20RI", ElementType::Hex20}, {"DC3D4", ElementType::Tet4},
    {"DC3D6", ElementType::Wedge6},   {"DC3D8", ElementType::Hex8},    {"DC3D10", ElementType::Tet10},
    {"DC3D15", ElementType::Wedge15}, {"DC3D20", ElementType::Hex20},
};

} // namespace

std::optional<ElementType> elementTypeOfCard(std::string_view type) {
    const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [&](const Row& candidate) { return candidate.name == type; });
    if (row == std::end(kRows)) return std::nullopt;
    return row->type;
}

} // namespace workbench
