#include "workbench/import/SolverDeck.h"

#include <cmath>

namespace workbench {
namespace {

using Vector = std::array<double, 3>;

double dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector minus(const Vector& a, const Vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// The part of `v` across the unit vector `axis`, with length 1; false when there is none.
bool across(const Vector& v, const Vector& axis, Vector& result) {
    const double along = dot(v, axis);
    const Vector rest{v[0] - along * axis[0], v[1] - along * axis[1], v[2] - along * axis[2]};
    const double length = std::sqrt(dot(rest, rest));
    if (!(length > 1e-12 * std::sqrt(dot(v, v)))) return false;
    result = {rest[0] / length, rest[1] / length, rest[2] / length};
    return true;
}

void setRows(const Vector& x, const Vector& y, const Vector& z, double axes[3][3]) {
    for (std::size_t i = 0; i < 3; ++i) {
        axes[0][i] = x[i];
        axes[1][i] = y[i];
        axes[2][i] = z[i];
    }
}

} // namespace

bool SolverOrientation::axesAt(const std::array<double, 3>& place, double axes[3][3]) const {
    if (!isKnown) return false;
    Vector x{}, y{}, z{};
    const Vector nothing{};
    if (isCylindrical) {
        if (!across(minus(second, first), nothing, z) || !across(minus(place, first), z, x)) return false;
        y = cross(z, x);
    } else {
        if (!across(first, nothing, x) || !across(second, x, y)) return false;
        z = cross(x, y);
    }
    setRows(x, y, z, axes);
    return true;
}

bool layOnSurface(const double normal[3], double axes[3][3]) {
    const Vector z{normal[0], normal[1], normal[2]};
    Vector x{};
    if (!across({axes[0][0], axes[0][1], axes[0][2]}, z, x)) return false;
    setRows(x, cross(z, x), z, axes);
    return true;
}

} // namespace workbench
