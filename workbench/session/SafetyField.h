#pragma once

#include "base/Result.h"
#include "module/stability/SafetyRate.h"
#include "workbench/session/Document.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

struct SafetyRequest {
    CPOHVCase* step = nullptr;
    std::optional<stability::RateMode> mode; ///< none: that of the step's analysis
    std::string name;                        ///< of the result set, UTF-8
};

/// The governing stress state of a node.
struct NodeSafety {
    std::uint32_t node = 0; ///< mesh position
    double rate = 0;
    double cohesion = 0;
    double frictionAngle = 0; ///< degrees
    double major = 0, minor = 0;
    bool hasStrength = false; ///< false: its materials have none, and the rate is 0
};

struct SafetyReport {
    stability::RateMode mode = stability::RateMode::FactorOfSafety;
    std::filesystem::path file;
    bool isNewSet = true;          ///< the document had no set of that name
    std::vector<NodeSafety> nodes; ///< ascending by node
    std::size_t states = 0;        ///< evaluated
    std::vector<std::string> warnings;
};

/// The local safety at the nodes of a step: the rate of every state of in-plane principal stress (of solids
/// the largest and the smallest) by the material of its property; where several states meet at a node, the
/// one with the least safety. Written as a result set of the components in Catalogue.h and registered with
/// the document, which is not saved. A set of that name is made anew.
Result<SafetyReport> computeSafety(Document& document, const SafetyRequest& request);

/// Whether a is less safe than b. Beyond the apex and on it nothing is less safe; a state without a radius is
/// the safest, and a material without strength gives way to any other.
bool isLessSafe(const NodeSafety& a, const NodeSafety& b, stability::RateMode mode);

} // namespace workbench
