#pragma once

#include "framework/Export.h"
#include "host/QMDocBase.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

/// The mesh of a document by its sets and by its nodes. For the mesh that the document has when the object is
/// made: make a new one after the mesh changed.
class VEXA_API CQMMeshManager {
  public:
    explicit CQMMeshManager(CQMDocBase& doc);
    /// Keys of the elements of the sets, ascending and each once; see CQMMeshUtil.
    int GetElemListByMsetItrArray(const std::vector<ItrKey>& msets, std::vector<ItrKey>& elements) const;
    /// Keys of the nodes that the sets name and of the nodes of their elements, ascending and each once.
    /// Zero, and `nodes` empty, when one of the sets does not exist.
    int GetNodeListByMsetItrArray(const std::vector<ItrKey>& msets, std::vector<ItrKey>& nodes) const;
    /// Keys of the elements that meet at a node, ascending and each once; empty for an unknown node. Lives as
    /// long as the object. The first call goes once through the mesh (4 bytes a node and 4 a corner stay).
    std::span<const std::uint32_t> GetElemListByNodeItr(ItrKey node);
    /// Smallest and largest coordinates of all nodes. Zero, and both untouched, when there are no nodes.
    int GetNodeBoundingBox(std::array<double, 3>& lower, std::array<double, 3>& upper) const;
    /// Shows (nonzero) or hides the sets in the host's views. Zero, and nothing changed, when one of the sets
    /// does not exist.
    int SetShowHideMset(const std::vector<ItrKey>& msets, int show) const;

  private:
    void BuildNodeElements();

    CQMDocBase& m_doc;
    T_QM_MESH_D m_mesh;
    /// Elements of node i: m_nodeElements[m_nodeOffsets[i]] up to m_nodeOffsets[i + 1]; empty until asked
    /// for.
    std::vector<std::uint32_t> m_nodeOffsets;
    std::vector<std::uint32_t> m_nodeElements;
};
