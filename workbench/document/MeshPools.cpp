#include "workbench/document/MeshPools.h"

#include "host/ElementTypes.h"
#include "workbench/document/RecordPool.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace workbench {

namespace {

using Vector = std::array<double, 3>;

Vector operator-(const Vector& a, const Vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Vector operator*(double factor, const Vector& a) {
    return {factor * a[0], factor * a[1], factor * a[2]};
}
double dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double largestPart(const Vector& a) {
    return std::max({std::fabs(a[0]), std::fabs(a[1]), std::fabs(a[2])});
}

/// `a` at length 1; nothing when it is shorter than `smallest` or not finite.
std::optional<Vector> unit(const Vector& a, double smallest) {
    const double length = std::sqrt(dot(a, a));
    if (!(length > smallest) || !std::isfinite(length)) return {};
    return (1 / length) * a;
}

/// Position of `key` in ascending `keys`. Keys are given out in rows, so the offset to the first one mostly
/// is it.
std::optional<std::size_t> positionOf(const std::vector<std::uint32_t>& keys, ItrKey key) {
    if (keys.empty() || key < keys.front() || key > keys.back()) return {};
    const std::size_t guess = key - keys.front();
    if (guess < keys.size() && keys[guess] == key) return guess;
    const auto found = std::lower_bound(keys.begin(), keys.end(), key);
    if (*found != key) return {};
    return static_cast<std::size_t>(found - keys.begin());
}

} // namespace

bool planarElementAxes(std::span<const Vector> corners, double axes[3][3]) {
    Vector side = corners[1] - corners[0];
    Vector first = corners.size() == 3 ? side : corners[2] - corners[0];
    Vector second = corners.size() == 3 ? corners[2] - corners[0] : corners[3] - corners[1];
    const double size = std::max({largestPart(side), largestPart(first), largestPart(second)});
    if (!(size > 0) || !std::isfinite(size)) return false;
    // Scaled to about 1, products neither overflow nor vanish and one tolerance fits every unit.
    side = (1 / size) * side;
    first = (1 / size) * first;
    second = (1 / size) * second;
    constexpr double kTolerance = 1e-12;
    const auto z = unit(cross(first, second), kTolerance);
    if (!z) return false;
    const auto x = unit(side - dot(side, *z) * *z, kTolerance);
    if (!x) return false;
    const Vector y = cross(*z, *x);
    std::copy(x->begin(), x->end(), axes[0]);
    std::copy(y.begin(), y.end(), axes[1]);
    std::copy(z->begin(), z->end(), axes[2]);
    return true;
}

bool NodePool::Exist(ItrKey key) const {
    return positionOf(mesh_.nodeKeys, key).has_value();
}

std::vector<ItrKey> NodePool::GetKeyList() const {
    return {mesh_.nodeKeys.begin(), mesh_.nodeKeys.end()};
}

int NodePool::Get(ItrKey key, tagTNode& record) const {
    const auto at = positionOf(mesh_.nodeKeys, key);
    if (!at) return 0;
    record = {key, mesh_.nodeNumbers[*at], static_cast<std::uint32_t>(*at), mesh_.nodePositions[*at]};
    return 1;
}

const tagTNode& NodePool::GetAtNU(ItrKey key) const {
    if (const auto found = composed_.find(key); found != composed_.end()) return found->second;
    tagTNode record;
    if (!Get(key, record)) throwUnknownKey("nodes", key);
    return composed_.emplace(key, record).first->second;
}

bool ElementPool::Exist(ItrKey key) const {
    return positionOf(mesh_.elementKeys, key).has_value();
}

std::vector<ItrKey> ElementPool::GetKeyList() const {
    return {mesh_.elementKeys.begin(), mesh_.elementKeys.end()};
}

int ElementPool::Get(ItrKey key, tagTElem& record) const {
    const auto at = positionOf(mesh_.elementKeys, key);
    if (!at) return 0;
    const std::size_t begin = mesh_.elementNodeOffsets[*at];
    const std::span nodes(mesh_.elementNodes);
    record = {key, mesh_.elementNumbers[*at], mesh_.elementTypes[*at], mesh_.elementPropertyKeys[*at],
              nodes.subspan(begin, mesh_.elementNodeOffsets[*at + 1] - begin)};
    return 1;
}

const tagTElem& ElementPool::GetAtNU(ItrKey key) const {
    if (const auto found = composed_.find(key); found != composed_.end()) return found->second;
    tagTElem record;
    if (!Get(key, record)) throwUnknownKey("elements", key);
    return composed_.emplace(key, record).first->second;
}

int ElementPool::Calc2DElemLocalVector(const tagTElem& elem, double axes[3][3]) const {
    if (!isPlanarElement(elem.type)) return 0;
    const auto type = static_cast<ElementType>(elem.type);
    const std::size_t cornerCount = type == ElementType::Tri3 || type == ElementType::Tri6 ? 3 : 4;
    if (elem.nodes.size() < cornerCount) return 0;
    std::array<Vector, 4> corners{};
    for (std::size_t i = 0; i < cornerCount; ++i) {
        if (elem.nodes[i] >= mesh_.nodePositions.size()) return 0;
        corners[i] = mesh_.nodePositions[elem.nodes[i]];
    }
    return planarElementAxes(std::span(corners).first(cornerCount), axes) ? 1 : 0;
}

std::vector<ItrKey> ElementPool::GetItrSetByItrPropSet(const std::vector<ItrKey>& propertyKeys) const {
    std::vector<ItrKey> wanted = propertyKeys;
    std::sort(wanted.begin(), wanted.end());
    std::vector<ItrKey> found;
    // Neighbours mostly share a property: its answer is remembered.
    std::uint32_t lastProperty = 0;
    bool lastWanted = std::binary_search(wanted.begin(), wanted.end(), ItrKey{0});
    for (std::size_t e = 0; e < mesh_.elementKeys.size(); ++e) {
        if (mesh_.elementPropertyKeys[e] != lastProperty) {
            lastProperty = mesh_.elementPropertyKeys[e];
            lastWanted = std::binary_search(wanted.begin(), wanted.end(), ItrKey{lastProperty});
        }
        if (lastWanted) found.push_back(mesh_.elementKeys[e]);
    }
    return found;
}

} // namespace workbench
