#include "host/QMMeshUtil.h"

#include "host/ElementQuantity.h"
#include "host/MeshPositions.h"

int CQMMeshUtil::GetElemListByMsetItrArray(const std::vector<ItrKey>& msets,
                                           std::vector<ItrKey>& elements) const {
    elements.clear();
    const auto* sets = m_session.Pool<DPoolMset>();
    std::vector<std::int32_t> numbers;
    for (const ItrKey key : msets) {
        if (!sets || !sets->Exist(key)) return 0;
        const tagTMset& set = sets->GetAtNU(key);
        numbers.insert(numbers.end(), set.elementNumbers.begin(), set.elementNumbers.end());
    }
    const T_QM_MESH_D& mesh = m_session.GetMesh();
    const auto positions = positionsOfNumbers(mesh.elementNumbers, std::move(numbers));
    elements.reserve(positions.size());
    for (const std::uint32_t position : positions)
        elements.push_back(mesh.elementKeys[position]);
    return 1;
}

double CQMMeshUtil::GetElemQuantity(ItrKey element) const {
    const T_QM_MESH_D& mesh = m_session.GetMesh();
    const std::size_t position = positionOfKey(mesh.elementKeys, element);
    return position == kNoPosition ? 0 : elementQuantity(mesh, position);
}
