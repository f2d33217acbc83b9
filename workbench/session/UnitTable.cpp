#include "workbench/session/UnitTable.h"

#include "host/QMUnitCtrl.h"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

struct Unit {
    const char* name;
    double size; ///< in newtons or metres
};

// Kilogram-force from the standard gravity 9.80665 m/s2 (3rd CGPM, 1901); pound 0.45359237 kg and inch
// 25.4 mm exactly (international yard and pound agreement, 1959).
constexpr double kGravity = 9.80665;
constexpr double kPound = 0.45359237;
constexpr Unit kForces[] = {{"N", 1},
                            {"kN", 1e3},
                            {"MN", 1e6},
                            {"kgf", kGravity},
                            {"tonf", 1e3 * kGravity},
                            {"lbf", kPound* kGravity},
                            {"kips", 1e3 * kPound* kGravity}};
constexpr Unit kLengths[] = {{"mm", 1e-3}, {"cm", 1e-2}, {"m", 1}, {"in", 0.0254}, {"ft", 0.3048}};

/// Powers of force, length and time of a kind of quantity.
struct Dimension {
    int kind;
    int force;
    int length;
    int time;
};

constexpr Dimension kDimensions[] = {
    {UnitKind::Length, 0, 1, 0},    {UnitKind::Force, 1, 0, 0},         {UnitKind::Mass, 1, -1, 2},
    {UnitKind::Velocity, 0, 1, -1}, {UnitKind::Acceleration, 0, 1, -2}, {UnitKind::FlowRate, 0, 3, -1},
    {UnitKind::Density, 1, -4, 2},  {UnitKind::Stress, 1, -2, 0},       {UnitKind::Time, 0, 0, 1},
};

Dimension dimensionOf(int kind) {
    const auto found = std::find_if(std::begin(kDimensions), std::end(kDimensions),
                                    [&](const Dimension& row) { return row.kind == kind; });
    return found != std::end(kDimensions) ? *found : Dimension{kind, 0, 0, 0};
}

template <std::size_t N>
double sizeOf(const Unit (&units)[N], const std::string& name) {
    const auto found =
        std::find_if(std::begin(units), std::end(units), [&](const Unit& u) { return name == u.name; });
    return found != std::end(units) ? found->size : 0;
}

template <std::size_t N>
std::vector<std::string> namesOf(const Unit (&units)[N]) {
    std::vector<std::string> names;
    for (const Unit& unit : units)
        names.emplace_back(unit.name);
    return names;
}

std::string power(const std::string& unit, int exponent) {
    constexpr const char* digits[] = {"", "", "²", "³", "⁴"};
    return unit + digits[exponent];
}

} // namespace

const std::vector<std::string>& forceUnits() {
    static const auto names = namesOf(kForces);
    return names;
}

const std::vector<std::string>& lengthUnits() {
    static const auto names = namesOf(kLengths);
    return names;
}

bool isKnown(const UnitSystem& system) {
    return sizeOf(kForces, system.force) > 0 && sizeOf(kLengths, system.length) > 0;
}

UnitSystem parseUnitSystem(std::string_view text) {
    const auto comma = text.find(',');
    if (comma == std::string_view::npos) return {};
    UnitSystem system{std::string(text.substr(0, comma)), std::string(text.substr(comma + 1))};
    return isKnown(system) ? system : UnitSystem{};
}

std::string unitSystemFault(const std::string& text) {
    if (!parseUnitSystem(text).force.empty()) return {};
    std::string fault = "\"" + text + "\" is no pair of force and length such as kN,m; force is one of";
    for (const std::string& unit : forceUnits())
        fault += " " + unit;
    fault += ", length of";
    for (const std::string& unit : lengthUnits())
        fault += " " + unit;
    return fault;
}

double unitFactor(int kind, const UnitSystem& from, const UnitSystem& to) {
    if (from == to) return 1; // exactly, whatever the quotients would round to
    const Dimension dimension = dimensionOf(kind);
    const double force = sizeOf(kForces, from.force) / sizeOf(kForces, to.force);
    const double length = sizeOf(kLengths, from.length) / sizeOf(kLengths, to.length);
    return std::pow(force, dimension.force) * std::pow(length, dimension.length);
}

std::string unitLabel(int kind, const UnitSystem& system) {
    const Dimension dimension = dimensionOf(kind);
    std::string above, below;
    const auto put = [&](const std::string& unit, int exponent) {
        std::string& side = exponent > 0 ? above : below;
        if (exponent == 0) return;
        if (!side.empty()) side += "·";
        side += power(unit, std::abs(exponent));
    };
    put(system.force, dimension.force);
    put(system.length, dimension.length);
    put("s", dimension.time);
    if (below.empty()) return above;
    return (above.empty() ? "1" : above) + "/" + below;
}

} // namespace workbench
