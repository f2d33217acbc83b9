#pragma once

#include "base/Result.h"
#include "host/VResult.h"
#include "host/records/Mesh.h"
#include "resultfile/ResultFile.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace workbench {

/// A result file seen through the mesh of a document: tables come out in mesh positions.
class ResultSource {
  public:
    explicit ResultSource(resultfile::Reader reader)
        : reader_(std::move(reader)) {}

    const resultfile::Reader& reader() const { return reader_; }

    /// Why the file does not belong to the mesh: node numbers the mesh lacks, elements of another shape.
    Result<void> checkMesh(const T_QM_MESH_D& mesh);

    /// Mesh positions of the nodes or elements that a component of this file stands at, ascending; nothing
    /// for the whole mesh.
    Result<std::optional<std::vector<std::uint32_t>>> itemsOf(const T_QM_MESH_D& mesh,
                                                              const resultfile::Component& component);

    /// A table and the storage that it looks into.
    struct Table {
        std::vector<float> values;
        std::vector<std::uint32_t> items;
        T_RESULT_TABLE_D view;
    };
    /// Reads a component and puts its values in mesh order: `items` ascend, and are empty for a whole mesh.
    Result<void> read(const T_QM_MESH_D& mesh, std::size_t caseIndex, std::size_t stepIndex, unsigned id,
                      Table& table);

  private:
    /// Mesh positions of the file's nodes and elements; no positions where the two agree one to one.
    struct Positions {
        std::optional<std::vector<std::uint32_t>> nodes;
        std::optional<std::vector<std::uint32_t>> elements;
    };
    Result<void> resolve(const T_QM_MESH_D& mesh);

    resultfile::Reader reader_;
    std::optional<Positions> positions_;
};

/// The component of a step; null when the step has none.
const resultfile::Component* findComponent(const resultfile::Step& step, unsigned id);

} // namespace workbench
