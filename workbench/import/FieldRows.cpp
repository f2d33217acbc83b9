#include "workbench/import/FieldRows.h"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

using resultfile::Location;

std::vector<bool> nodesOfFamily(ElementFamily family, const ResultMesh& mesh) {
    std::vector<bool> nodes(mesh.nodeNumbers.size());
    for (std::size_t e = 0; e < mesh.elementNumbers.size(); ++e)
        if (mesh.elementFamilies[e] == family)
            for (const std::uint32_t node : mesh.nodesOf(e))
                nodes[node] = true;
    return nodes;
}

} // namespace

FieldRows FieldRows::of(const FieldHeader& header, const FieldValues& values, const MeshModel& model,
                        const ResultMesh& mesh) {
    const bool atNodes = header.place == FieldPlace::Node;
    const bool perCorner = header.place == FieldPlace::Corner;
    const auto& positions = atNodes ? model.nodePositions : model.elementPositions;
    const auto& types = model.file.mesh().elementTypes;
    std::vector<std::pair<std::uint32_t, std::size_t>> placed;
    const std::size_t count = values.items.empty() ? positions.size() : values.items.size();
    for (std::size_t i = 0, at = 0; i < count; ++i) {
        const std::size_t item = values.items.empty() ? i : values.items[i];
        if (positions[item] != MeshModel::kNone) placed.push_back({positions[item], at});
        at += header.components * (perCorner ? static_cast<std::size_t>(elementNodeCount(types[item])) : 1);
    }
    std::sort(placed.begin(), placed.end());

    FieldRows rows;
    if (!atNodes) rows.location = Location::ElementCorner;
    for (const auto& [item, first] : placed) {
        const std::size_t corners = atNodes ? 1 : mesh.nodesOf(item).size();
        const auto all =
            std::span(values.values).subspan(first, header.components * (perCorner ? corners : 1));
        if (!std::ranges::all_of(all, [](float v) { return std::isfinite(v); })) {
            ++rows.missing;
            continue;
        }
        rows.items.push_back(item);
        for (std::size_t corner = 0; corner < corners; ++corner)
            rows.first.push_back(first + (perCorner ? corner * header.components : 0));
    }
    return rows;
}

FieldRows FieldRows::ofFamily(ElementFamily family, const ResultMesh& mesh) const {
    FieldRows kept;
    kept.location = location;
    if (location == Location::Node) {
        const auto wanted = nodesOfFamily(family, mesh);
        for (std::size_t i = 0; i < items.size(); ++i)
            if (wanted[items[i]]) {
                kept.items.push_back(items[i]);
                kept.first.push_back(first[i]);
            }
        return kept;
    }
    std::size_t row = 0;
    for (const std::uint32_t element : items) {
        const std::size_t corners = mesh.nodesOf(element).size();
        if (mesh.elementFamilies[element] == family) {
            kept.items.push_back(element);
            for (std::size_t corner = 0; corner < corners; ++corner)
                kept.first.push_back(first[row + corner]);
        }
        row += corners;
    }
    return kept;
}

FieldRows FieldRows::atCorners(ElementFamily family, const ResultMesh& mesh) const {
    constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
    std::vector<std::size_t> firstOfNode(mesh.nodeNumbers.size(), kNowhere);
    for (std::size_t i = 0; i < items.size(); ++i)
        firstOfNode[items[i]] = first[i];
    FieldRows corners;
    corners.location = Location::ElementCorner;
    for (std::size_t e = 0; e < mesh.elementNumbers.size(); ++e) {
        if (mesh.elementFamilies[e] != family) continue;
        const auto nodes = mesh.nodesOf(e);
        if (std::ranges::any_of(nodes, [&](std::uint32_t node) { return firstOfNode[node] == kNowhere; }))
            continue;
        corners.items.push_back(static_cast<std::uint32_t>(e));
        for (const std::uint32_t node : nodes)
            corners.first.push_back(firstOfNode[node]);
    }
    return corners;
}

} // namespace workbench
