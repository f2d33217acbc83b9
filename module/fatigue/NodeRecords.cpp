#include "module/fatigue/NodeRecords.h"

#include "module/fatigue/TensorRotation.h"

#include <algorithm>
#include <vector>

namespace fatigue {
namespace {

/// Values of one block of nodes: 256 KiB, which stays in a second-level cache.
constexpr std::size_t kBlockValues = 65536;

/// Copies the components of `nodes` into `block`: node by node, load by load, component by component.
void transpose(const NodeSection& section, std::span<const std::uint32_t> nodes, std::size_t components,
               float* block) {
    const std::size_t width = section.loads.size() * components;
    for (std::size_t load = 0; load < section.loads.size(); ++load)
        for (std::size_t c = 0; c < components; ++c) {
            const float* const values = section.loads[load][c];
            float* target = block + load * components + c;
            for (const std::uint32_t node : nodes) {
                *target = values[node];
                target += width;
            }
        }
}

template <std::size_t Components>
void writeLoads(RecordWriter& records, const NodeSection& section, const float* values) {
    for (std::size_t load = 0; load < section.loads.size(); ++load, values += Components) {
        const std::span<const float, Components> tensor(values, Components);
        if (section.caseKeys.empty())
            records.record(tensor);
        else
            records.record(section.caseKeys[load], tensor);
    }
}

template <std::size_t Components>
void writeBlocks(RecordWriter& records, const NodeSection& section, NodeMaterials& materials) {
    const std::int32_t loads = static_cast<std::int32_t>(section.loads.size());
    const std::size_t width = std::max<std::size_t>(section.loads.size() * Components, 1);
    const std::size_t blockNodes = std::max<std::size_t>(kBlockValues / width, 16);
    std::vector<float> block(blockNodes * width);
    for (std::size_t first = 0; first < section.nodes.size(); first += blockNodes) {
        const auto nodes = section.nodes.subspan(first, std::min(blockNodes, section.nodes.size() - first));
        transpose(section, nodes, Components, block.data());
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const std::int32_t number = section.numbers[nodes[i]];
            const std::span<const std::int32_t> indices = materials.of(section.keys[nodes[i]]);
            records.record(number, loads, number, static_cast<std::int32_t>(indices.size()));
            if (!indices.empty()) records.record(indices);
            writeLoads<Components>(records, section, block.data() + i * width);
        }
    }
}

} // namespace

void writeNodes(RecordWriter& records, const NodeSection& section, NodeMaterials& materials) {
    records.comment("* Node Data");
    if (section.stressAndStrain)
        writeBlocks<2 * kTensorComponents>(records, section, materials);
    else
        writeBlocks<kTensorComponents>(records, section, materials);
}

} // namespace fatigue
