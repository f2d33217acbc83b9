#pragma once

#include "module/fatigue/ElementLists.h"

#include <optional>

namespace fatigue {

/// The values of one result table. At nodes: one value a node; else one value a corner, element by element in
/// connectivity order. `items` lists the nodes or elements that have values, ascending; empty: all of them.
struct TableView {
    bool atNodes = false;
    std::span<const float> values;
    std::span<const std::uint32_t> items;
};

/// Which values of a table belong to a list of elements, and at which nodes they stand. Built once for the
/// tables of a group that share location and items.
class TableReach {
  public:
    /// None when the table does not fit the mesh: values too few or too many, items out of range or order.
    static std::optional<TableReach> of(const MeshView& mesh, std::span<const ElementRun> elements,
                                        const TableView& table);

    /// Whether another table has the same location, items and number of values.
    bool matches(const TableView& table) const;
    /// Every element of the list has its values.
    bool whole() const { return items_.empty(); }
    bool atNodes() const { return atNodes_; }

    /// Adds each value of the table into the sum of the node where it stands.
    void addTo(std::span<float> sums, std::span<const float> values) const;
    /// Adds one for each value into the count of the node where it stands.
    void addCounts(std::span<std::uint32_t> counts) const;
    /// Calls visit(position in the element list, node, index of the value) for each value.
    template <class Visit>
    void forEachValue(Visit visit) const {
        for (const CornerRun& run : runs_) {
            std::size_t slot = run.slot;
            for (std::uint32_t element = 0; element < run.elements; ++element) {
                const std::size_t end = mesh_.offsets[run.firstElement + element + 1];
                for (; slot < end; ++slot) {
                    const std::size_t value = valueIndex(run, slot);
                    if (value != kAbsent) visit(run.listPosition + element, mesh_.nodes[slot], value);
                }
            }
        }
    }

  private:
    /// Neighbouring elements whose corners and values lie one after another.
    struct CornerRun {
        std::uint32_t firstElement;
        std::uint32_t elements;
        std::size_t listPosition; ///< of the first element
        std::size_t slot;         ///< of its first corner in the connectivity
        std::size_t corners;
        std::size_t firstValue; ///< of corner tables
    };
    static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);
    static constexpr std::uint32_t kNoPosition = static_cast<std::uint32_t>(-1);

    bool indexNodes(const TableView& table);
    bool intersect(std::span<const ElementRun> elements, const TableView& table);
    void appendRun(const ElementRun& run, std::size_t listPosition, std::size_t firstValue);
    std::size_t valueIndex(const CornerRun& run, std::size_t slot) const {
        if (!atNodes_) return run.firstValue + (slot - run.slot);
        const std::uint32_t node = mesh_.nodes[slot];
        if (positions_.empty()) return node;
        return positions_[node] == kNoPosition ? kAbsent : positions_[node];
    }

    MeshView mesh_;
    bool atNodes_ = false;
    std::size_t valueCount_ = 0;
    std::vector<std::uint32_t> items_;
    std::vector<CornerRun> runs_;
    std::vector<std::uint32_t> positions_; ///< node -> index of its value, for node tables with items
};

} // namespace fatigue
