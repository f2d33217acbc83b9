#include "host/DPool.h"

#include "host/ElementTypes.h"
#include "host/QMDBSession.h"

#include <algorithm>
#include <set>

int DPoolProp::GetThickness(ItrKey propertyKey, double& thickness) const {
    tagTProp property;
    if (!Get(propertyKey, property) || property.typeCode == PropertyType::Solid) return 0;
    thickness = property.thickness;
    return 1;
}

std::wstring DPoolVXMcas::GetNewCopyName(const std::wstring& name) const {
    std::set<std::wstring> taken;
    for (const ItrKey key : GetKeyList())
        taken.insert(GetAtNU(key).name);
    for (std::size_t number = 1;; ++number) {
        const std::wstring suffix = L"_" + std::to_wstring(number);
        std::wstring copy = name.substr(0, kAnalysisNameLength - suffix.size()) + suffix;
        if (!taken.contains(copy)) return copy;
    }
}

int DPoolProj::Is3D() const {
    const T_QM_MESH_D& mesh = m_session.GetMesh();
    if (std::ranges::any_of(mesh.elementTypes, isSolidElement)) return 1;
    return std::ranges::any_of(mesh.nodePositions,
                               [&](const auto& p) { return p[2] != mesh.nodePositions.front()[2]; });
}
