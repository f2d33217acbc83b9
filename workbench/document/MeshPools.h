#pragma once

#include "host/DPool.h"
#include "workbench/document/MeshData.h"

#include <unordered_map>

namespace workbench {

/// The nodes of the mesh as a pool. Reads only: the mesh is replaced as a whole. GetAtNU keeps each record
/// that it composed until the mesh changes; work that touches every node reads the mesh tables.
class NodePool final : public DPoolNode {
  public:
    explicit NodePool(const MeshData& mesh)
        : mesh_(mesh) {}

    std::size_t GetCount() const override { return mesh_.nodeKeys.size(); }
    bool Exist(ItrKey key) const override;
    std::vector<ItrKey> GetKeyList() const override;
    const tagTNode& GetAtNU(ItrKey key) const override;
    int Get(ItrKey key, tagTNode& record) const override;
    ItrKey TR_Add(const tagTNode&) override { return 0; }
    int TR_Modify(const tagTNode&) override { return 0; }
    int TR_Del(ItrKey) override { return 0; }

    void meshChanged() { composed_.clear(); }

  private:
    const MeshData& mesh_;
    mutable std::unordered_map<ItrKey, tagTNode> composed_;
};

/// The elements of the mesh as a pool, in the same way.
class ElementPool final : public DPoolElem {
  public:
    explicit ElementPool(const MeshData& mesh)
        : mesh_(mesh) {}

    std::size_t GetCount() const override { return mesh_.elementKeys.size(); }
    bool Exist(ItrKey key) const override;
    std::vector<ItrKey> GetKeyList() const override;
    const tagTElem& GetAtNU(ItrKey key) const override;
    int Get(ItrKey key, tagTElem& record) const override;
    ItrKey TR_Add(const tagTElem&) override { return 0; }
    int TR_Modify(const tagTElem&) override { return 0; }
    int TR_Del(ItrKey) override { return 0; }
    /// z is the normal: the cross product of the first two edges of a triangle (p1 - p0, p2 - p0) and of the
    /// diagonals of a quadrilateral (p2 - p0, p3 - p1); x is the first edge p1 - p0 projected into the plane
    /// of that normal; y = z x x. Nodes between the corners do not count.
    int Calc2DElemLocalVector(const tagTElem& elem, double axes[3][3]) const override;
    std::vector<ItrKey> GetItrSetByItrPropSet(const std::vector<ItrKey>& propertyKeys) const override;

    void meshChanged() { composed_.clear(); }

  private:
    const MeshData& mesh_;
    mutable std::unordered_map<ItrKey, tagTElem> composed_;
};

/// Local axes of a planar element from its 3 or 4 corners; see ElementPool::Calc2DElemLocalVector. False, and
/// `axes` untouched, when the corners are degenerate: a side or the area vanishes, or a coordinate is not
/// finite.
bool planarElementAxes(std::span<const std::array<double, 3>> corners, double axes[3][3]);

} // namespace workbench
