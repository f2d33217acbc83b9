#pragma once

#include "workbench/import/ElementCards.h"
#include "workbench/import/SolverDeck.h"
#include "workbench/meshfile/MeshReaderProcess.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace workbench {

/// A mesh file as a model: what it says in the terms of a solver deck, and where its nodes and elements went.
struct MeshModel {
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    MeshFile file;
    SolverDeck deck;                             ///< with one step
    std::vector<std::uint32_t> nodePositions;    ///< in the deck, of each node of the file
    std::vector<std::uint32_t> elementPositions; ///< likewise; kNone of elements that the deck lacks
};

/// Reads a mesh file. Faces and edges of other elements, which mark places of loads and supports, become node
/// sets, not elements, unless `planar` says what planar elements are; otherwise these are shells. Every group
/// becomes a set with a section whose material has the name of the group and no constants.
Result<MeshModel> readMeshModel(const std::filesystem::path& path, std::optional<ElementFamily> planar);

} // namespace workbench
