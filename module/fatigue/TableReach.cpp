#include "module/fatigue/TableReach.h"

#include <algorithm>
#include <functional>

namespace fatigue {
namespace {

bool ascendingBelow(std::span<const std::uint32_t> items, std::size_t limit) {
    return std::ranges::adjacent_find(items, std::greater_equal<>()) == items.end() && items.back() < limit;
}

} // namespace

std::optional<TableReach> TableReach::of(const MeshView& mesh, std::span<const ElementRun> elements,
                                         const TableView& table) {
    TableReach reach;
    reach.mesh_ = mesh;
    reach.atNodes_ = table.atNodes;
    reach.valueCount_ = table.values.size();
    const std::size_t limit = table.atNodes ? mesh.nodeCount : mesh.elementCount();
    if (!table.items.empty() && !ascendingBelow(table.items, limit)) return std::nullopt;
    reach.items_.assign(table.items.begin(), table.items.end());
    if (table.atNodes && !reach.indexNodes(table)) return std::nullopt;
    if (!table.atNodes && !table.items.empty()) {
        if (!reach.intersect(elements, table)) return std::nullopt;
        return reach;
    }
    if (!table.atNodes && table.values.size() != mesh.nodes.size()) return std::nullopt;
    std::size_t listPosition = 0;
    for (const ElementRun& run : elements) {
        reach.appendRun(run, listPosition, mesh.offsets[run.first]);
        listPosition += run.count;
    }
    return reach;
}

bool TableReach::indexNodes(const TableView& table) {
    if (table.items.empty()) return table.values.size() == mesh_.nodeCount;
    if (table.values.size() != table.items.size()) return false;
    positions_.assign(mesh_.nodeCount, kNoPosition);
    for (std::uint32_t i = 0; i < table.items.size(); ++i)
        positions_[table.items[i]] = i;
    return true;
}

/// Finds the elements that are in the list and in the items; both ascend.
bool TableReach::intersect(std::span<const ElementRun> elements, const TableView& table) {
    std::size_t firstValue = 0;
    std::size_t listPosition = 0;
    auto run = elements.begin();
    for (const std::uint32_t item : table.items) {
        while (run != elements.end() && run->first + run->count <= item) {
            listPosition += run->count;
            ++run;
        }
        if (run != elements.end() && run->first <= item)
            appendRun({item, 1}, listPosition + (item - run->first), firstValue);
        firstValue += mesh_.offsets[item + 1] - mesh_.offsets[item];
    }
    return firstValue == table.values.size();
}

void TableReach::appendRun(const ElementRun& run, std::size_t listPosition, std::size_t firstValue) {
    const std::size_t slot = mesh_.offsets[run.first];
    const std::size_t corners = mesh_.offsets[run.first + run.count] - slot;
    if (!runs_.empty()) {
        CornerRun& last = runs_.back();
        if (last.firstElement + last.elements == run.first &&
            last.listPosition + last.elements == listPosition &&
            last.firstValue + last.corners == firstValue) {
            last.elements += run.count;
            last.corners += corners;
            return;
        }
    }
    runs_.push_back({run.first, run.count, listPosition, slot, corners, firstValue});
}

bool TableReach::matches(const TableView& table) const {
    return table.atNodes == atNodes_ && table.values.size() == valueCount_ &&
           std::ranges::equal(table.items, items_);
}

void TableReach::addTo(std::span<float> sums, std::span<const float> values) const {
    for (const CornerRun& run : runs_) {
        const std::uint32_t* const nodes = mesh_.nodes.data() + run.slot;
        if (!atNodes_) {
            const float* const corner = values.data() + run.firstValue;
            for (std::size_t i = 0; i < run.corners; ++i)
                sums[nodes[i]] += corner[i];
        } else if (positions_.empty()) {
            for (std::size_t i = 0; i < run.corners; ++i)
                sums[nodes[i]] += values[nodes[i]];
        } else {
            for (std::size_t i = 0; i < run.corners; ++i)
                if (const std::uint32_t position = positions_[nodes[i]]; position != kNoPosition)
                    sums[nodes[i]] += values[position];
        }
    }
}

void TableReach::addCounts(std::span<std::uint32_t> counts) const {
    forEachValue([&](std::size_t, std::uint32_t node, std::size_t) { ++counts[node]; });
}

} // namespace fatigue
