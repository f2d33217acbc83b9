#pragma once

#include "framework/Export.h"
#include "host/QMDBSession.h"

#include <vector>

/// Questions about mesh sets and elements of a model database, which must outlive the object.
class VEXA_API CQMMeshUtil {
  public:
    explicit CQMMeshUtil(CQMDBSession& session)
        : m_session(session) {}
    /// Keys of the elements of the sets, ascending and each once. Numbers that the mesh does not have (any
    /// more) are passed over. Zero, and `elements` empty, when one of the sets does not exist.
    int GetElemListByMsetItrArray(const std::vector<ItrKey>& msets, std::vector<ItrKey>& elements) const;
    /// Area of a planar element, volume of a solid, by its corners; 0 for other elements and unknown keys.
    double GetElemQuantity(ItrKey element) const;

  private:
    CQMDBSession& m_session;
};
