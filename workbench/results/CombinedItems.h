#pragma once

#include "base/Result.h"
#include "resultfile/ResultFile.h"
#include "workbench/results/ResultSource.h"

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <tuple>
#include <vector>

namespace workbench {

/// Nodes, or elements with all their corners, that the values of tables stand at. Lists with the same items
/// are the same object, see CombinedItems.
struct ItemSet {
    resultfile::Location location = resultfile::Location::Node;
    bool whole = true;                ///< the whole mesh; `items` is empty
    std::vector<std::uint32_t> items; ///< mesh positions, ascending
    std::uint64_t valueCount = 0;
};

/// Values of a table that are taken over, by their places in it; null: all.
using Selection = std::shared_ptr<const std::vector<std::uint32_t>>;

/// The sets of items that take part in a combination, each made once. `mesh` must live longer.
class CombinedItems {
  public:
    explicit CombinedItems(const T_QM_MESH_D& mesh)
        : mesh_(mesh) {}

    /// What a component of a file stands at.
    Result<const ItemSet*> of(ResultSource& source, const resultfile::Component& component);
    /// The items of both, which have the same location.
    const ItemSet* common(const ItemSet* a, const ItemSet* b);
    /// Which values of a table on `set` stand at the items of `part`, all of which it has.
    Selection select(const ItemSet* set, const ItemSet* part);

  private:
    const ItemSet* keep(ItemSet set);
    std::uint64_t valueCountOf(const ItemSet& set) const;
    std::size_t cornersOf(std::uint32_t element) const { return mesh_.nodesOf(element).size(); }

    const T_QM_MESH_D& mesh_;
    std::vector<std::unique_ptr<const ItemSet>> sets_;
    std::map<std::tuple<const ResultSource*, resultfile::Location, std::string>, const ItemSet*> ofFiles_;
    std::map<std::pair<const ItemSet*, const ItemSet*>, const ItemSet*> common_;
    std::map<std::pair<const ItemSet*, const ItemSet*>, Selection> selections_;
};

/// The selected values of a table, one piece after another.
class SelectedStream {
  public:
    SelectedStream(resultfile::Reader::Stream stream, Selection selection)
        : stream_(std::move(stream))
        , selection_(std::move(selection)) {}

    /// The next selected values. `space` is for values that are passed over.
    Result<void> next(std::span<float> out, std::span<float> space);
    /// Passes over the rest, so that the table is checked as a whole.
    Result<void> finish(std::span<float> space);

  private:
    resultfile::Reader::Stream stream_;
    Selection selection_;
    std::size_t at_ = 0; ///< in the selection
};

} // namespace workbench
