#include "host/QMMeshManager.h"

#include "host/HostServices.h"
#include "host/MeshPositions.h"
#include "host/QMMeshUtil.h"

#include <algorithm>

CQMMeshManager::CQMMeshManager(CQMDocBase& doc)
    : m_doc(doc)
    , m_mesh(CQMGlobalData::GetStruct(doc)) {}

int CQMMeshManager::GetElemListByMsetItrArray(const std::vector<ItrKey>& msets,
                                              std::vector<ItrKey>& elements) const {
    return CQMMeshUtil(m_doc.GetDBSession()).GetElemListByMsetItrArray(msets, elements);
}

int CQMMeshManager::GetNodeListByMsetItrArray(const std::vector<ItrKey>& msets,
                                              std::vector<ItrKey>& nodes) const {
    nodes.clear();
    const auto* sets = m_doc.GetDBSession().Pool<DPoolMset>();
    std::vector<std::int32_t> nodeNumbers, elementNumbers;
    for (const ItrKey key : msets) {
        if (!sets || !sets->Exist(key)) return 0;
        const tagTMset& set = sets->GetAtNU(key);
        nodeNumbers.insert(nodeNumbers.end(), set.nodeNumbers.begin(), set.nodeNumbers.end());
        elementNumbers.insert(elementNumbers.end(), set.elementNumbers.begin(), set.elementNumbers.end());
    }
    std::vector<bool> taken(m_mesh.nodeCount());
    for (const std::uint32_t node : positionsOfNumbers(m_mesh.nodeNumbers, std::move(nodeNumbers)))
        taken[node] = true;
    for (const std::uint32_t element : positionsOfNumbers(m_mesh.elementNumbers, std::move(elementNumbers)))
        for (const std::uint32_t node : m_mesh.nodesOf(element))
            taken[node] = true;
    for (std::size_t node = 0; node < taken.size(); ++node)
        if (taken[node]) nodes.push_back(m_mesh.nodeKeys[node]);
    return 1;
}

std::span<const std::uint32_t> CQMMeshManager::GetElemListByNodeItr(ItrKey node) {
    const std::size_t position = positionOfKey(m_mesh.nodeKeys, node);
    if (position == kNoPosition) return {};
    if (m_nodeOffsets.empty()) BuildNodeElements();
    const std::uint32_t first = m_nodeOffsets[position];
    return std::span(m_nodeElements).subspan(first, m_nodeOffsets[position + 1] - first);
}

void CQMMeshManager::BuildNodeElements() {
    // A collapsed element names a node twice: the last element that counted at each node tells.
    std::vector<std::uint32_t> last(m_mesh.nodeCount(), 0); // element + 1
    m_nodeOffsets.assign(m_mesh.nodeCount() + 1, 0);
    for (std::uint32_t element = 0; element < m_mesh.elementCount(); ++element)
        for (const std::uint32_t node : m_mesh.nodesOf(element))
            if (last[node] != element + 1) {
                last[node] = element + 1;
                ++m_nodeOffsets[node + 1];
            }
    for (std::size_t node = 0; node < m_mesh.nodeCount(); ++node)
        m_nodeOffsets[node + 1] += m_nodeOffsets[node];

    std::vector<std::uint32_t>& next = last; // where the next element of a node goes
    std::copy(m_nodeOffsets.begin(), m_nodeOffsets.end() - 1, next.begin());
    m_nodeElements.resize(m_nodeOffsets.back());
    for (std::uint32_t element = 0; element < m_mesh.elementCount(); ++element) {
        const std::uint32_t key = m_mesh.elementKeys[element];
        for (const std::uint32_t node : m_mesh.nodesOf(element))
            if (next[node] == m_nodeOffsets[node] || m_nodeElements[next[node] - 1] != key)
                m_nodeElements[next[node]++] = key;
    }
}

int CQMMeshManager::GetNodeBoundingBox(std::array<double, 3>& lower, std::array<double, 3>& upper) const {
    if (m_mesh.nodePositions.empty()) return 0;
    lower = upper = m_mesh.nodePositions.front();
    for (const std::array<double, 3>& position : m_mesh.nodePositions)
        for (std::size_t axis = 0; axis < 3; ++axis) {
            lower[axis] = std::min(lower[axis], position[axis]);
            upper[axis] = std::max(upper[axis], position[axis]);
        }
    return 1;
}

int CQMMeshManager::SetShowHideMset(const std::vector<ItrKey>& msets, int show) const {
    const auto* sets = m_doc.GetDBSession().Pool<DPoolMset>();
    if (!sets || !std::ranges::all_of(msets, [&](ItrKey key) { return sets->Exist(key); })) return 0;
    for (const ItrKey key : msets)
        HostServices().ShowMeshSet(m_doc, key, show != 0);
    return 1;
}
