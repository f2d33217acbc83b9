#include "host/PDLItem.h"

#include "host/QMGlobalData.h"

#include <algorithm>
#include <limits>

namespace {

constexpr float kNoValue = std::numeric_limits<float>::quiet_NaN();

/// Calls visit(element, values of its corners) for every element of a table of corner values. False when the
/// table does not fit the mesh; some elements may have been visited then.
template <class Visit>
bool forEachElement(const T_QM_MESH_D& mesh, const T_RESULT_TABLE_D& table, const Visit& visit) {
    const std::size_t count = table.items.empty() ? mesh.elementCount() : table.items.size();
    std::size_t begin = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t element = table.items.empty() ? i : table.items[i];
        if (element >= mesh.elementCount()) return false;
        const std::size_t corners = mesh.nodesOf(element).size();
        if (table.values.size() - begin < corners) return false;
        visit(element, table.values.subspan(begin, corners));
        begin += corners;
    }
    return begin == table.values.size();
}

bool spreadNodes(const T_QM_MESH_D& mesh, const T_RESULT_TABLE_D& table, std::vector<float>& values) {
    values.assign(mesh.nodeCount(), kNoValue);
    if (table.values.size() != (table.items.empty() ? values.size() : table.items.size())) return false;
    if (table.items.empty()) {
        std::ranges::copy(table.values, values.begin());
        return true;
    }
    for (std::size_t i = 0; i < table.items.size(); ++i) {
        if (table.items[i] >= values.size()) return false;
        values[table.items[i]] = table.values[i];
    }
    return true;
}

bool spreadCorners(const T_QM_MESH_D& mesh, const T_RESULT_TABLE_D& table, std::vector<float>& values) {
    values.assign(mesh.elementNodes.size(), kNoValue);
    return forEachElement(mesh, table, [&](std::size_t element, std::span<const float> corners) {
        std::ranges::copy(corners, values.begin() + mesh.elementNodeOffsets[element]);
    });
}

bool averageCorners(const T_QM_MESH_D& mesh, const T_RESULT_TABLE_D& table, std::vector<float>& values) {
    values.assign(mesh.nodeCount(), 0);
    std::vector<std::uint32_t> counts(mesh.nodeCount());
    const bool fits = forEachElement(mesh, table, [&](std::size_t element, std::span<const float> corners) {
        const auto nodes = mesh.nodesOf(element);
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            values[nodes[i]] += corners[i];
            ++counts[nodes[i]];
        }
    });
    for (std::size_t node = 0; node < values.size(); ++node)
        values[node] = counts[node] ? values[node] / static_cast<float>(counts[node]) : kNoValue;
    return fits;
}

} // namespace

int CPDLItem::LoadOrgData(CVResult* result) {
    Clear();
    const CVResultLease table(result);
    if (!m_pDoc || !table) return 0;
    const T_QM_MESH_D& mesh = CQMGlobalData::GetStruct(*m_pDoc);
    const bool corners = table->location == ResultLocation::ElementCorner;
    const bool fits = corners ? spreadCorners(mesh, *table, m_values) : spreadNodes(mesh, *table, m_values);
    if (!fits) {
        Clear();
        return 0;
    }
    m_location = table->location;
    return 1;
}

int CPDLItem::LoadMainData(CVResult* result) {
    Clear();
    const CVResultLease table(result);
    if (!m_pDoc || !table) return 0;
    if (table->location == ResultLocation::Node) return LoadOrgData(result);
    if (!averageCorners(CQMGlobalData::GetStruct(*m_pDoc), *table, m_values)) {
        Clear();
        return 0;
    }
    return 1;
}

void CPDLItem::Clear() {
    m_values = {};
    m_location = ResultLocation::Node;
}
