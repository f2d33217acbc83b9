#include "workbench/document/MeshData.h"

namespace workbench {

T_QM_MESH_D MeshData::view() const {
    return {nodeKeys,     nodeNumbers,         nodePositions,      elementKeys, elementNumbers,
            elementTypes, elementPropertyKeys, elementNodeOffsets, elementNodes};
}

} // namespace workbench
