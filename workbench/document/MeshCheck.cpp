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

Result<void> checkElements(const MeshData& mesh) {
    const auto nodes = static_cast<std::uint32_t>(mesh.nodeNumbers.size());
    for (std::size_t e = 0; e < mesh.elementNumbers.size(); ++e) {
        const std::uint32_t begin = mesh.elementNodeOffsets[e];
        const std::uint32_t end = mesh.elementNodeOffsets[e + 1];
        const int wanted = elementNodeCount(mesh.elementTypes[e]);
        if (wanted == 0)
            return Error{elementName(mesh, e) + " has the unknown type " +
                         std::to_string(mesh.elementTypes[e])};
        if (end < begin || end > mesh.elementNodes.size() ||
            end - begin != static_cast<std::uint32_t>(wanted))
            return Error{elementName(mesh, e) + " of type " + std::to_string(mesh.elementTypes[e]) +
                         " does not have its " + std::to_string(wanted) + " nodes"};
        std::uint32_t largest = 0;
        for (std::uint32_t i = begin; i < end; ++i)
            largest = std::max(largest, mesh.elementNodes[i]);
        if (largest >= nodes)
            return Error{elementName(mesh, e) + " refers to node index " + std::to_string(largest) +
                         ", but the mesh has " + std::to_string(nodes) + " nodes"};
    }
    return {};
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
    if (auto checked = checkElements(mesh); !checked) return checked;
    return checkProperties(mesh, isProperty);
}

} // namespace workbench
