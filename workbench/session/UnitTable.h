#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// A system of units: a force and a length; times are seconds, angles radians.
struct UnitSystem {
    std::string force;
    std::string length;

    bool operator==(const UnitSystem&) const = default;
};

/// Names of the units that the table knows.
const std::vector<std::string>& forceUnits();
const std::vector<std::string>& lengthUnits();
bool isKnown(const UnitSystem& system);

/// "kN,m" as a unit system; zero force when the text is no such pair.
UnitSystem parseUnitSystem(std::string_view text);
/// What is wrong with a text that is no such pair, and which units there are; empty for one that is.
std::string unitSystemFault(const std::string& text);

/// Factor that turns a number of a quantity in `from` into `to`. Kinds are UnitKind's; 1 for kinds without
/// force or length. Both systems must be known.
double unitFactor(int kind, const UnitSystem& from, const UnitSystem& to);

/// What stands behind a number of that kind, such as "N/mm²"; empty for pure numbers.
std::string unitLabel(int kind, const UnitSystem& system);

} // namespace workbench
