#pragma once

#include "resultfile/ResultFile.h"
#include "workbench/import/MeshModel.h"
#include "workbench/import/ResultRows.h"

#include <cstdint>
#include <vector>

namespace workbench {

/// Where the values of an array of a mesh file belong in the document's mesh: a row for each node, or for
/// each corner of each element.
struct FieldRows {
    resultfile::Location location = resultfile::Location::Node;
    std::vector<std::uint32_t> items; ///< ascending mesh positions
    std::vector<std::size_t> first;   ///< place of the first value of each row
    std::size_t missing = 0;          ///< items left out, since a value is not finite

    /// Items that `mesh` does not have are passed over.
    static FieldRows of(const FieldHeader& header, const FieldValues& values, const MeshModel& model,
                        const ResultMesh& mesh);
    /// Those of the items of a family; of nodes those that such an element has.
    FieldRows ofFamily(ElementFamily family, const ResultMesh& mesh) const;
    /// From rows at nodes: the corners of the elements of a family all of whose nodes have a row.
    FieldRows atCorners(ElementFamily family, const ResultMesh& mesh) const;
};

} // namespace workbench
