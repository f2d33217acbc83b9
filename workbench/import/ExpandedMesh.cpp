#include "workbench/import/ExpandedMesh.h"

#include <algorithm>
#include <string>

namespace workbench {
namespace {

constexpr std::int8_t kNone = -1;

/// What stands for one node of an element, as positions among the nodes of its solid in the result file:
/// opposite nodes in turn, then the nodes between them.
struct Section {
    std::array<std::int8_t, 4> opposite{kNone, kNone, kNone, kNone};
    std::array<std::int8_t, 4> between{kNone, kNone, kNone, kNone};
};

/// An element of the deck as a solid of the result file. The file numbers the nodes of a quadratic solid:
/// corners below, corners above, middles of the lower edges, of the upright edges, of the upper edges.
struct Expansion {
    ElementType type;
    int solidType; ///< code of the result file
    std::array<Section, 8> sections;
};

constexpr Section upright(std::int8_t lower, std::int8_t upper, std::int8_t middle = kNone) {
    return {{lower, upper, kNone, kNone}, {middle, kNone, kNone, kNone}};
}

// A beam's axis runs from the face of the corners 0, 3, 4, 7 to that of 1, 2, 5, 6.
constexpr Section kBeamStart{{0, 7, 3, 4}, {kNone, kNone, kNone, kNone}};
constexpr Section kBeamEnd{{1, 6, 2, 5}, {kNone, kNone, kNone, kNone}};

constexpr Expansion kExpansions[] = {
    {ElementType::Tri3, 2, {upright(0, 3), upright(1, 4), upright(2, 5)}},
    {ElementType::Quad4, 1, {upright(0, 4), upright(1, 5), upright(2, 6), upright(3, 7)}},
    {ElementType::Tri6,
     5,
     {upright(0, 3, 9), upright(1, 4, 10), upright(2, 5, 11), upright(6, 12), upright(7, 13),
      upright(8, 14)}},
    {ElementType::Quad8,
     4,
     {upright(0, 4, 12), upright(1, 5, 13), upright(2, 6, 14), upright(3, 7, 15), upright(8, 16),
      upright(9, 17), upright(10, 18), upright(11, 19)}},
    {ElementType::Beam, 1, {kBeamStart, kBeamEnd}},
    {ElementType::Line2, 1, {kBeamStart, kBeamEnd}},
    {ElementType::Line3,
     4,
     {Section{{0, 7, 3, 4}, {11, 12, 15, 19}}, Section{{8, 18, 10, 16}, {kNone, kNone, kNone, kNone}},
      Section{{1, 6, 2, 5}, {9, 13, 14, 17}}}},
};

/// Codes of the result file from this one on are lines and planar elements.
constexpr int kFirstFlatType = 7;
constexpr int kLastType = 12;

const Expansion* expansionOf(std::uint8_t type) {
    const auto found =
        std::find_if(std::begin(kExpansions), std::end(kExpansions), [&](const Expansion& candidate) {
            return static_cast<std::uint8_t>(candidate.type) == type;
        });
    return found == std::end(kExpansions) ? nullptr : &*found;
}

template <class T>
void sortOnce(std::vector<T>& values) {
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

} // namespace

ExpandedMesh::ExpandedMesh(const ResultMesh& mesh)
    : mesh_(mesh)
    , expects_(std::any_of(mesh.elementFamilies.begin(), mesh.elementFamilies.end(), isExpanded)) {}

Result<void> ExpandedMesh::add(std::size_t position, const FrdElement& element) {
    if (!isExpanded(mesh_.elementFamilies[position])) return {};
    const auto nodes = mesh_.nodesOf(position);
    const auto first = static_cast<std::uint32_t>(cornerPairs_.size());
    const bool flat = element.type >= kFirstFlatType && element.type <= kLastType;
    elements_.push_back({static_cast<std::uint32_t>(position), first, flat});
    if (flat) {
        for (const std::uint32_t node : nodes)
            cornerPairs_.push_back({node, mesh_.nodeNumbers[node], mesh_.nodeNumbers[node]});
        return {};
    }
    const auto expansion =
        std::find_if(std::begin(kExpansions), std::end(kExpansions), [&](const Expansion& candidate) {
            return static_cast<std::uint8_t>(candidate.type) == mesh_.elementTypes[position];
        });
    // The solids have more nodes than any section names; a short list is caught node by node.
    const auto fileNode = [&](std::int8_t at) {
        return static_cast<std::size_t>(at) < element.nodes.size()
                   ? element.nodes[static_cast<std::size_t>(at)]
                   : 0;
    };
    const auto fail = [&] {
        return Error{
            "element " + std::to_string(element.number) + " has the type " + std::to_string(element.type) +
            " and " + std::to_string(element.nodes.size()) +
            " nodes, which is not what the solver makes of it; the result file belongs to another deck"};
    };
    if (!expansion || expansion->solidType != element.type) return fail();
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const Section& section = expansion->sections[i];
        for (std::size_t k = 0; k < section.opposite.size() && section.opposite[k] != kNone; k += 2) {
            const std::int32_t lower = fileNode(section.opposite[k]),
                               upper = fileNode(section.opposite[k + 1]);
            if (lower < 1 || upper < 1) return fail();
            const Pair pair{nodes[i], lower, upper};
            if (k == 0) cornerPairs_.push_back(pair);
            pairs_.push_back(pair);
            members_.push_back({nodes[i], lower});
            members_.push_back({nodes[i], upper});
        }
        for (const std::int8_t between : section.between)
            if (between != kNone && fileNode(between) > 0) members_.push_back({nodes[i], fileNode(between)});
    }
    return {};
}

bool ExpandedMesh::addLayer(const FrdElement& element) {
    if (mesh_.elementLayers.empty()) return false;
    layers_.push_back({element.number, element.type, {element.nodes.begin(), element.nodes.end()}});
    return true;
}

/// Adds a layered shell as the solid that its outer layers bound.
bool ExpandedMesh::placeLayers() {
    std::size_t expected = 0;
    for (const std::uint16_t count : mesh_.elementLayers)
        expected += count;
    if (layers_.size() != expected) return false;
    std::size_t first = 0;
    for (std::size_t e = 0; e < mesh_.elementLayers.size(); ++e) {
        const std::size_t count = mesh_.elementLayers[e];
        if (count == 0) continue;
        Layer& lower = layers_[first];
        const Layer& upper = layers_[first + count - 1];
        first += count;
        const auto expansion = expansionOf(mesh_.elementTypes[e]);
        if (!expansion || upper.nodes.size() != lower.nodes.size()) return false;
        for (const Section& section : expansion->sections) {
            const auto at = static_cast<std::size_t>(section.opposite[1]);
            if (section.opposite[1] != kNone && at < upper.nodes.size()) lower.nodes[at] = upper.nodes[at];
        }
        if (!add(e, {lower.number, lower.type, lower.nodes})) return false;
    }
    return true;
}

bool ExpandedMesh::finish() {
    const bool placed = layers_.empty() || placeLayers();
    layers_ = {};
    sortOnce(pairs_);
    sortOnce(members_);
    std::sort(elements_.begin(), elements_.end(),
              [](const Element& a, const Element& b) { return a.element < b.element; });
    const auto twice = [](const Element& a, const Element& b) { return a.element == b.element; };
    elements_.erase(std::unique(elements_.begin(), elements_.end(), twice), elements_.end());
    return placed;
}

} // namespace workbench
