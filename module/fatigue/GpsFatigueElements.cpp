#include "module/fatigue/GpsFatigueSolver.h"

#include <algorithm>
#include <optional>

namespace {

/// One counter a group, so that every group's identifiers are asked for exactly when it has elements.
std::optional<fatigue::ElementGroup> groupOf(const tagTProp& property) {
    using fatigue::ElementGroup;
    switch (property.typeCode) {
    case PropertyType::Solid:
        return ElementGroup::Solid;
    case PropertyType::Shell:
        return ElementGroup::Plate;
    case PropertyType::Membrane:
        return ElementGroup::Membrane;
    case PropertyType::Axisymmetric:
        return ElementGroup::Axisymmetric;
    case PropertyType::PlaneStress:
        return ElementGroup::PlaneStress;
    case PropertyType::PlaneStrain:
        return ElementGroup::PlaneStrain;
    default:
        return std::nullopt;
    }
}

/// Properties that the result check refuses by name must reach it, though they have no results to read.
bool refusedLater(const tagTProp& property) {
    return property.plotOnly || property.typeCode == PropertyType::Geogrid2D ||
           property.typeCode == PropertyType::GaugingPlate2D;
}

} // namespace

int CGpsFatigueSolver::MakeWriteNodeElem() {
    m_lists = {};
    m_lists.mesh = {m_mesh.elementNodeOffsets, m_mesh.elementNodes, m_mesh.nodeCount()};
    m_propertiesInUse.clear();

    // Whether a property takes part, and its group; asked of the host once a property.
    struct Part {
        bool used = false;
        std::optional<fatigue::ElementGroup> group;
    };
    std::unordered_map<ItrKey, Part> parts;
    const auto partOf = [&](ItrKey key) {
        Part part;
        tagTProp property;
        const auto known = [&](ItrKey material) { return m_materialNumber.contains(material); };
        if (m_propertyPool->Get(key, property) &&
            std::ranges::any_of(m_propertyPool->GetMatlItr(key), known)) {
            part.group = groupOf(property);
            part.used = part.group || refusedLater(property);
        }
        if (part.used) m_propertiesInUse.push_back(key);
        return part;
    };
    ItrKey lastKey = 0;
    Part last;
    for (std::uint32_t element = 0; element < m_mesh.elementCount(); ++element) {
        const ItrKey key = m_mesh.elementPropertyKeys[element];
        if (key != lastKey) {
            const auto found = parts.find(key);
            last = found != parts.end() ? found->second : parts.emplace(key, partOf(key)).first->second;
            lastKey = key;
        }
        if (!last.group) continue;
        m_lists.append(*last.group, element);
        if (fatigue::hasLocalAxes(*last.group))
            m_lists.axes[static_cast<std::size_t>(*last.group)].push_back(AxesOf(element));
    }
    std::ranges::sort(m_propertiesInUse);
    m_lists.collectNodes();
    return !m_propertiesInUse.empty();
}

tagTElem CGpsFatigueSolver::ElementRecord(std::uint32_t element) const {
    return {m_mesh.elementKeys[element], m_mesh.elementNumbers[element], m_mesh.elementTypes[element],
            m_mesh.elementPropertyKeys[element], m_mesh.nodesOf(element)};
}

fatigue::LocalAxes CGpsFatigueSolver::AxesOf(std::uint32_t element) const {
    fatigue::LocalAxes axes{};
    axes.valid = m_elementPool->Calc2DElemLocalVector(ElementRecord(element), axes.rows) != 0;
    return axes;
}

/// Materials are gathered once a definition. Most nodes have one, so the first is kept apart and only the
/// others go through sorting.
void CGpsFatigueSolver::GatherNodeMaterials() {
    constexpr ItrKey kNone = 0;
    std::vector<std::uint32_t> first(m_mesh.nodeCount(), 0); // position in `keys` + 1
    std::vector<ItrKey> keys;
    std::unordered_map<ItrKey, std::vector<std::uint32_t>> ofProperty;
    const auto materialsOf = [&](ItrKey propertyKey) -> const std::vector<std::uint32_t>& {
        const auto [found, fresh] = ofProperty.try_emplace(propertyKey);
        if (fresh)
            for (const ItrKey key : m_propertyPool->GetMatlItr(propertyKey)) {
                const auto known = std::ranges::find(keys, key);
                found->second.push_back(static_cast<std::uint32_t>(known - keys.begin()) + 1);
                if (known == keys.end()) keys.push_back(key);
            }
        return found->second;
    };
    ItrKey lastProperty = kNone;
    const std::vector<std::uint32_t>* materials = nullptr;
    for (const auto& runs : m_lists.groups)
        for (const fatigue::ElementRun& run : runs)
            for (std::uint32_t element = run.first; element < run.first + run.count; ++element) {
                const ItrKey property = m_mesh.elementPropertyKeys[element];
                if (!materials || property != lastProperty) materials = &materialsOf(property);
                lastProperty = property;
                for (const std::uint32_t node : m_mesh.nodesOf(element))
                    for (const std::uint32_t material : *materials) {
                        if (first[node] == 0)
                            first[node] = material;
                        else if (first[node] != material)
                            AddNodeMatl(m_mesh.nodeKeys[node], keys[material - 1]);
                    }
            }
    for (const std::uint32_t node : m_lists.nodes)
        if (first[node]) AddNodeMatl(m_mesh.nodeKeys[node], keys[first[node] - 1]);
}

void CGpsFatigueSolver::AddNodeMatl(std::uint64_t nodeKey, std::uint64_t materialKey) {
    const auto found = m_materialIndex.find(materialKey);
    if (found != m_materialIndex.end()) m_nodeMaterial.add(nodeKey, found->second);
}

long CGpsFatigueSolver::GetNodeMatl(std::uint64_t nodeKey, TArray<long>& indices) {
    indices.RemoveAll();
    for (const std::int32_t index : m_nodeMaterial.of(nodeKey))
        indices.Add(index);
    return static_cast<long>(indices.GetSize());
}
