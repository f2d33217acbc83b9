#include "solver/PlaneSet.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace solver {
namespace {

constexpr int kDivisions = 6; // of an edge of the icosahedron; 10 * 6 * 6 + 2 vertices in all

double dot(const Vector3& a, const Vector3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector3 unit(const Vector3& v) {
    const double length = std::sqrt(dot(v, v));
    return {v[0] / length, v[1] / length, v[2] / length};
}

/// Cyclic permutations of (0, +-1, +-golden ratio).
std::vector<Vector3> icosahedron() {
    constexpr double g = std::numbers::phi;
    std::vector<Vector3> corners;
    for (const double one : {-1.0, 1.0})
        for (const double golden : {-g, g}) {
            corners.push_back({0, one, golden});
            corners.push_back({one, golden, 0});
            corners.push_back({golden, 0, one});
        }
    return corners;
}

bool holdsLine(const std::vector<Vector3>& normals, const Vector3& v) {
    return std::ranges::any_of(normals, [&](const Vector3& n) { return std::abs(dot(n, v)) > 1 - 1e-9; });
}

/// The points that divide one face, its corners and edges included.
void addFace(const Vector3& a, const Vector3& b, const Vector3& c, std::vector<Vector3>& normals) {
    for (int i = 0; i <= kDivisions; ++i)
        for (int j = 0; i + j <= kDivisions; ++j) {
            const double wa = i, wb = j, wc = kDivisions - i - j;
            const Vector3 point = unit({wa * a[0] + wb * b[0] + wc * c[0], wa * a[1] + wb * b[1] + wc * c[1],
                                        wa * a[2] + wb * b[2] + wc * c[2]});
            if (!holdsLine(normals, point)) normals.push_back(withStatedSign(point));
        }
}

} // namespace

Vector3 withStatedSign(const Vector3& n) {
    const double last = n[2] != 0 ? n[2] : n[1] != 0 ? n[1] : n[0];
    if (last >= 0) return n;
    return {0.0 - n[0], 0.0 - n[1], 0.0 - n[2]};
}

PlaneSet::PlaneSet() {
    const auto corners = icosahedron();
    const auto adjacent = [&](std::size_t i, std::size_t j) {
        const Vector3 d{corners[i][0] - corners[j][0], corners[i][1] - corners[j][1],
                        corners[i][2] - corners[j][2]};
        return std::abs(dot(d, d) - 4) < 1e-9; // edges have length 2
    };
    for (std::size_t i = 0; i < corners.size(); ++i)
        for (std::size_t j = i + 1; j < corners.size(); ++j)
            for (std::size_t k = j + 1; k < corners.size(); ++k)
                if (adjacent(i, j) && adjacent(j, k) && adjacent(i, k))
                    addFace(corners[i], corners[j], corners[k], normals_);
}

const PlaneSet& PlaneSet::instance() {
    static const PlaneSet set;
    return set;
}

} // namespace solver
