#pragma once

#include "framework/Export.h"
#include "host/records/Mesh.h"

class CQMDocBase;

/// The host's tables behind the pools, for work that touches every node and element.
class VEXA_API CQMGlobalData {
  public:
    /// The mesh of `doc` as bulk tables; valid while the document is unchanged.
    static const T_QM_MESH_D& GetStruct(CQMDocBase& doc);
};
