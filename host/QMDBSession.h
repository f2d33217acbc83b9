#pragma once

#include "host/DPool.h"
#include "host/records/Mesh.h"

/// The model database of one document.
class CQMDBSession {
  public:
    virtual ~CQMDBSession() = default;
    /// The pool of a record kind, owned by the session; null when the host keeps no such pool.
    virtual IDPool* GetDataPool(PoolId id) = 0;
    /// The mesh as bulk tables; valid while the document is unchanged.
    virtual const T_QM_MESH_D& GetMesh() const = 0;
    /// Forgets everything that could be undone.
    virtual void ClearUndo() = 0;

    /// The pool by its type, as `session.Pool<DPoolMatl>()`; null as above.
    template <class P>
    P* Pool() {
        return static_cast<P*>(GetDataPool(P::kId));
    }
};
