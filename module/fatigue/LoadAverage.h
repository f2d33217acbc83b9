#pragma once

#include "module/fatigue/TableReach.h"

#include <array>

namespace fatigue {

/// Averages the element values of one load at the nodes.
///
/// Call the add functions group by group in the order of ElementGroup, each component of a group once, then
/// finish(). `arrays` are the six arrays of the load (order of TensorComponent), one float a mesh node, zero
/// at the start; the sums are built in their slots. Nothing is thrown; a false answer means that the arrays
/// are not usable.
class LoadAverage {
  public:
    LoadAverage(const ElementLists& lists, float* const* arrays);

    /// Adds one component of a group whose results stand in global axes. False when the table does not fit
    /// the mesh or the group's other tables.
    bool add(ElementGroup group, TensorComponent component, const TableView& table);

    /// Adds the in-plane components xx, yy, xy of a group whose results stand in each element's axes, turned
    /// into global axes. The local components zz, yz, zx are zero. False as above.
    bool addTurned(ElementGroup group, const std::array<TableView, 3>& inPlane);

    /// Divides the sums by the number of contributing elements. False when a node of the list has none.
    bool finish();

  private:
    const TableReach* reachOf(ElementGroup group, const TableView& table);
    std::span<float> sums(int component) const { return {arrays_[component], lists_.mesh.nodeCount}; }
    void addRepeated(std::span<float> sums, std::span<const float> values) const;

    const ElementLists& lists_;
    float* const* arrays_;
    std::array<std::optional<TableReach>, kGroupCount> reaches_;
};

} // namespace fatigue
