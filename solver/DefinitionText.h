#pragma once

#include "solver/Definition.h"

#include <ostream>
#include <string>

namespace solver {

/// "stress-life over 3 load entries", "strain-life over 20 steps", ...
std::string typeText(const Definition& definition);

/// Options, materials and loads in words, some lines; long lists are cut and say so.
void describeDefinition(const Definition& definition, std::ostream& out);

} // namespace solver
