#include "module/fatigue/ElementLists.h"

#include <algorithm>

namespace fatigue {

int ElementLists::presentCount() const {
    return static_cast<int>(std::ranges::count_if(groups, [](const auto& runs) { return !runs.empty(); }));
}

void ElementLists::append(ElementGroup group, std::uint32_t element) {
    auto& runs = groups[static_cast<std::size_t>(group)];
    if (!runs.empty() && runs.back().first + runs.back().count == element)
        ++runs.back().count;
    else
        runs.push_back({element, 1});
}

void ElementLists::collectNodes() {
    counts.assign(mesh.nodeCount, 0);
    for (const auto& runs : groups)
        for (const ElementRun& run : runs)
            for (std::size_t slot = mesh.offsets[run.first]; slot < mesh.offsets[run.first + run.count];
                 ++slot)
                ++counts[mesh.nodes[slot]];
    nodes.clear();
    nodes.reserve(counts.size() - static_cast<std::size_t>(std::ranges::count(counts, 0u)));
    for (std::uint32_t node = 0; node < counts.size(); ++node)
        if (counts[node]) nodes.push_back(node);
}

} // namespace fatigue
