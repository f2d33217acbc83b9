#pragma once

#include <string>
#include <vector>

namespace workbench {

/// Something that a check found: which item, what is wrong with it, and what to do.
struct Finding {
    std::string item;
    std::string problem;
    std::string remedy;
};

using Findings = std::vector<Finding>;

} // namespace workbench
