#pragma once

#include "workbench/document/DocumentRows.h"

namespace workbench {

/// Items of a column that stand in one block.
inline constexpr std::size_t kBlockItems = 65536;

/// Writes the columns of a mesh into `mesh_blocks` and notes the rows in `rows.blocks`.
Result<void> writeMeshBlocks(const SqliteConnection& connection, const MeshData& mesh, DocumentRows& rows);

/// Reads the columns back. Sizes are checked before memory is taken, every block against its checksum.
Result<MeshData> readMeshBlocks(const SqliteConnection& connection, const DocumentRows& rows);

} // namespace workbench
