#include "workbench/results/ResultSource.h"

#include <algorithm>
#include <string>

namespace workbench {
namespace {

/// Positions of `numbers` within `meshNumbers` (both ascending); nothing when they agree one to one.
Result<std::optional<std::vector<std::uint32_t>>> locate(std::span<const std::int32_t> numbers,
                                                         std::span<const std::int32_t> meshNumbers,
                                                         const char* what,
                                                         const std::filesystem::path& path) {
    if (std::ranges::equal(numbers, meshNumbers)) return std::optional<std::vector<std::uint32_t>>{};
    std::vector<std::uint32_t> positions(numbers.size());
    std::size_t at = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        while (at < meshNumbers.size() && meshNumbers[at] < numbers[i])
            ++at;
        if (at == meshNumbers.size() || meshNumbers[at] != numbers[i])
            return Error{path.string() + " holds results of " + what + " " + std::to_string(numbers[i]) +
                         ", which the model does not have: the file belongs to another model"};
        positions[i] = static_cast<std::uint32_t>(at);
    }
    return std::optional(std::move(positions));
}

} // namespace

const resultfile::Component* findComponent(const resultfile::Step& step, unsigned id) {
    const auto found = std::ranges::lower_bound(step.components, id, {}, &resultfile::Component::id);
    return found != step.components.end() && found->id == id ? &*found : nullptr;
}

Result<void> ResultSource::checkMesh(const T_QM_MESH_D& mesh) {
    return resolve(mesh);
}

Result<void> ResultSource::resolve(const T_QM_MESH_D& mesh) {
    if (positions_) return {};
    Positions positions;
    const auto nodeNumbers = reader_.nodeNumbers();
    if (!nodeNumbers) return nodeNumbers.error();
    auto nodes = locate(*nodeNumbers, mesh.nodeNumbers, "node", reader_.path());
    if (!nodes) return nodes.error();
    positions.nodes = std::move(*nodes);

    const auto elementNumbers = reader_.elementNumbers();
    if (!elementNumbers) return elementNumbers.error();
    auto elements = locate(*elementNumbers, mesh.elementNumbers, "element", reader_.path());
    if (!elements) return elements.error();
    positions.elements = std::move(*elements);

    const auto corners = reader_.elementCornerCounts();
    if (!corners) return corners.error();
    for (std::size_t i = 0; i < corners->size(); ++i) {
        const std::size_t element = positions.elements ? (*positions.elements)[i] : i;
        if (mesh.nodesOf(element).size() != static_cast<std::size_t>((*corners)[i]))
            return Error{reader_.path().string() + ": element " +
                         std::to_string(mesh.elementNumbers[element]) + " has " +
                         std::to_string((*corners)[i]) + " corners there and " +
                         std::to_string(mesh.nodesOf(element).size()) + " nodes in the model"};
    }
    positions_ = std::move(positions);
    return {};
}

Result<std::optional<std::vector<std::uint32_t>>>
ResultSource::itemsOf(const T_QM_MESH_D& mesh, const resultfile::Component& component) {
    if (auto resolved = resolve(mesh); !resolved) return resolved.error();
    const bool corner = component.location == resultfile::Location::ElementCorner;
    const auto& positions = corner ? positions_->elements : positions_->nodes;
    if (component.items.empty()) return positions;
    auto items = reader_.items(component.items);
    if (!items) return items.error();
    if (positions)
        for (std::uint32_t& item : *items)
            item = positions->at(item);
    return std::optional(std::move(*items));
}

Result<void> ResultSource::read(const T_QM_MESH_D& mesh, std::size_t caseIndex, std::size_t stepIndex,
                                unsigned id, Table& table) {
    if (auto resolved = resolve(mesh); !resolved) return resolved;
    const resultfile::Component* component =
        findComponent(reader_.contents().cases.at(caseIndex).steps.at(stepIndex), id);
    if (!component)
        return Error{reader_.path().string() + " has no component " + std::to_string(id) + " in that step"};
    auto values = reader_.values(caseIndex, stepIndex, id);
    if (!values) return values.error();
    auto items = itemsOf(mesh, *component);
    if (!items) return items.error();
    const bool corner = component->location == resultfile::Location::ElementCorner;
    table.items = items->has_value() ? std::move(**items) : std::vector<std::uint32_t>();
    table.values = std::move(*values);
    table.view = {id, corner ? ::ResultLocation::ElementCorner : ::ResultLocation::Node, table.values,
                  table.items};
    return {};
}

} // namespace workbench
