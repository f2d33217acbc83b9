#include "workbench/document/MeshCheck.h"

#include "host/ElementTypes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace workbench {

namespace {

std::string count(std::size_t n) {
    return std::to_string(n);
}

Result<void> checkLengths(const MeshData& mesh) {
    const std::size_t nodes = mesh.nodeNumbers.size();
    const std::size_t elements = mesh.elementNumbers.size();
    if (mesh.nodePositions.size() != nodes)
        return Error{"the mesh has " + count(nodes) + " node numbers but " +
                     count(mesh.nodePositions.size()) + " positions"};
    if (mesh.elementTypes.size() != elements || mesh.elementPropertyKeys.size() != elements)
        return Error{"the mesh has " + count(elements) + " element numbers but " +
                     count(mesh.elementTypes.size()) + " types and " +
                     count(mesh.elementPropertyKeys.size()) + " properties"};
    if (mesh.elementNodeOffsets.size() != elements + 1 || mesh.elementNodeOffsets.front() != 0 ||
        mesh.elementNodeOffsets.back() != mesh.elementNodes.size())
        return Error{"the node offsets of the mesh do not frame the node lists of " + count(elements) +
                     " elements"};
    if (nodes > kNodeIndexMask)
        return Error{"the mesh has " + count(nodes) + " nodes; at most " + count(kNodeIndexMask) +
                     " are possible"};
    return {};
}

Result<void> checkNumbers(const std::vector<std::int32_t>& numbers, const char* kind) {
    std::int32_t previous = 0;
    for (const std::int32_t number : numbers) {
        if (number <= previous)
            return Error{std::string(kind) + " number " + std::to_string(number) + " follows " +
                         std::to_string(previous) + "; numbers must be positive and ascend"};
        previous = number;
    }
    return {};
}

Result<void> checkPositions(const MeshData& mesh) {
    for (std::size_t n = 0; n < mesh.nodePositions.size(); ++n) {
        const auto& p = mesh.nodePositions[n];
        // Zero times anything finite is zero: one test for the three.
        if ((p[0] * 0 + p[1] * 0 + p[2] * 0) != 0)
            return Error{"node " + std::to_string(mesh.nodeNumbers[n]) +
                         " has a coordinate that is not finite"};
    }
    return {};
}

std::string elementName(const MeshData& mesh, std::size_t element) {
    return "element " + std::to_string(mesh.elementNumbers[element]);
}

Result<void> checkElementShapes(const MeshData& mesh) {
    for (std::size_t e = 0; e < mesh.elementNumbers.size(); ++e) {
        const std::uint8_t type = mesh.elementTypes[e];
        const auto wanted = static_cast<std::uint32_t>(elementNodeCount(type));
        if (wanted == 0) return Error{elementName(mesh, e) + " has the unknown type " + std::to_string(type)};
        // Taken modulo 2^32, which no type's count reaches: descending offsets fail too.
        if (mesh.elementNodeOffsets[e + 1] - mesh.elementNodeOffsets[e] != wanted)
            return Error{elementName(mesh, e) + " of type " + std::to_string(type) + " does not have its " +
                         std::to_string(wanted) + " nodes"};
    }
    return {};
}

/// After checkElementShapes.
Result<void> checkElementNodes(const MeshData& mesh) {
    const std::size_t nodes = mesh.nodeNumbers.size();
    std::uint32_t largest = 0;
    for (const std::uint32_t node : mesh.elementNodes)
        largest = std::max(largest, node);
    if (largest < nodes || mesh.elementNodes.empty()) return {};
    const auto at = std::find_if(mesh.elementNodes.begin(), mesh.elementNodes.end(),
                                 [nodes](std::uint32_t node) { return node >= nodes; });
    const auto position = static_cast<std::uint32_t>(at - mesh.elementNodes.begin());
    const auto next =
        std::upper_bound(mesh.elementNodeOffsets.begin(), mesh.elementNodeOffsets.end(), position);
    const auto element = static_cast<std::size_t>(next - mesh.elementNodeOffsets.begin()) - 1;
    return Error{elementName(mesh, element) + " refers to node index " + std::to_string(*at) +
                 ", but the mesh has " + count(nodes) + " nodes"};
}

Result<void> checkProperties(const MeshData& mesh, const std::function<bool(ItrKey)>& isProperty) {
    std::uint32_t known = 0;
    for (std::size_t e = 0; e < mesh.elementPropertyKeys.size(); ++e) {
        const std::uint32_t property = mesh.elementPropertyKeys[e];
        if (property == known || property == 0) continue;
        if (!isProperty(property))
            return Error{elementName(mesh, e) + " refers to property key " + std::to_string(property) +
                         ", which does not exist"};
        known = property;
    }
    return {};
}

} // namespace

Result<void> checkMesh(const MeshData& mesh, const std::function<bool(ItrKey)>& isProperty) {
    if (auto checked = checkLengths(mesh); !checked) return checked;
    if (auto checked = checkNumbers(mesh.nodeNumbers, "node"); !checked) return checked;
    if (auto checked = checkPositions(mesh); !checked) return checked;
    if (auto checked = checkNumbers(mesh.elementNumbers, "element"); !checked) return checked;
    if (auto checked = checkElementShapes(mesh); !checked) return checked;
    if (auto checked = checkElementNodes(mesh); !checked) return checked;
    return checkProperties(mesh, isProperty);
}

} // namespace workbench
