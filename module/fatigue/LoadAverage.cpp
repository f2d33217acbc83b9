#include "module/fatigue/LoadAverage.h"

#include <algorithm>

namespace fatigue {

LoadAverage::LoadAverage(const ElementLists& lists, float* const* arrays)
    : lists_(lists)
    , arrays_(arrays) {}

/// All tables of a group must cover the same elements; else one count could not serve all components.
const TableReach* LoadAverage::reachOf(ElementGroup group, const TableView& table) {
    auto& reach = reaches_[static_cast<std::size_t>(group)];
    if (!reach)
        reach = TableReach::of(lists_.mesh, lists_.groups[static_cast<std::size_t>(group)], table);
    else if (!reach->matches(table))
        return nullptr;
    return reach ? &*reach : nullptr;
}

bool LoadAverage::add(ElementGroup group, TensorComponent component, const TableView& table) {
    const TableReach* reach = reachOf(group, table);
    if (!reach) return false;
    if (reach->whole() && reach->atNodes() && lists_.presentCount() == 1)
        addRepeated(sums(component), table.values);
    else
        reach->addTo(sums(component), table.values);
    return true;
}

/// Where one group covers everything, each node takes its own value once an element: the same additions in
/// the same slots without walking the connectivity.
void LoadAverage::addRepeated(std::span<float> sums, std::span<const float> values) const {
    for (const std::uint32_t node : lists_.nodes) {
        float sum = sums[node];
        for (std::uint32_t n = lists_.counts[node]; n > 0; --n)
            sum += values[node];
        sums[node] = sum;
    }
}

bool LoadAverage::addTurned(ElementGroup group, const std::array<TableView, 3>& inPlane) {
    const TableReach* reach = reachOf(group, inPlane[0]);
    if (!reach || !reach->matches(inPlane[1]) || !reach->matches(inPlane[2])) return false;
    const std::vector<LocalAxes>& axes = lists_.axes[static_cast<std::size_t>(group)];
    reach->forEachValue([&](std::size_t element, std::uint32_t node, std::size_t value) {
        double tensor[kTensorComponents] = {};
        tensor[XX] = static_cast<double>(inPlane[0].values[value]);
        tensor[YY] = static_cast<double>(inPlane[1].values[value]);
        tensor[XY] = static_cast<double>(inPlane[2].values[value]);
        if (axes[element].valid) turnToGlobal(tensor, axes[element].rows);
        for (int c = 0; c < kTensorComponents; ++c)
            arrays_[c][node] = static_cast<float>(static_cast<double>(arrays_[c][node]) + tensor[c]);
    });
    return true;
}

bool LoadAverage::finish() {
    std::vector<std::uint32_t> partial;
    const auto whole = [](const auto& reach) { return !reach || reach->whole(); };
    const bool allWhole = std::ranges::all_of(reaches_, whole);
    if (!allWhole) {
        partial.assign(lists_.mesh.nodeCount, 0);
        for (const auto& reach : reaches_)
            if (reach) reach->addCounts(partial);
        if (std::ranges::any_of(lists_.nodes, [&](std::uint32_t node) { return partial[node] == 0; }))
            return false;
    }
    const std::span<const std::uint32_t> counts = allWhole ? std::span(lists_.counts) : std::span(partial);
    for (int c = 0; c < kTensorComponents; ++c) {
        float* const array = arrays_[c];
        for (std::size_t node = 0; node < counts.size(); ++node)
            array[node] /= static_cast<float>(std::max(counts[node], 1u));
    }
    return true;
}

} // namespace fatigue
