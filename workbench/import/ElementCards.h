#pragma once

#include "host/ElementTypes.h"

#include <optional>
#include <string_view>

namespace workbench {

/// The host's element type of a CalculiX type name (upper case). Nothing for types that are not read. The
/// order of nodes is the same on both sides for all of them.
std::optional<ElementType> elementTypeOfCard(std::string_view type);

} // namespace workbench
