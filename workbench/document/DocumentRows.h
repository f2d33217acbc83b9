#pragma once

#include "base/Result.h"
#include "workbench/document/DocumentFile.h"
#include "workbench/document/ModelState.h"
#include "workbench/document/Sqlite.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace workbench {

inline constexpr int kSchemaVersion = 2; ///< 2: strengths of materials, kind of local safety
inline constexpr std::int32_t kApplicationId = 0x574B4D31; ///< "WKM1"

/// A row of the table `records`.
struct RecordRow {
    ItrKey key = 0;
    std::string pool;
    std::string name;
    std::string data; ///< JSON
    bool operator==(const RecordRow&) const = default;
};

/// A row of the table `mesh_blocks`, its data aside. Row ids count from 1.
struct MeshBlockRow {
    std::string column;
    std::int64_t block = 0;
    std::int64_t items = 0;
    std::string checksum; ///< of the data
    std::int64_t bytes = 0;
};

/// Everything that stands in a document, but for the data of its mesh blocks.
struct DocumentRows {
    std::map<std::string, std::string> meta;   ///< without the checksum
    std::string checksum;                      ///< of the content, as the file states it
    std::vector<RecordRow> records;            ///< ascending keys
    std::vector<ResultFileRecord> resultFiles; ///< ascending keys
    std::vector<std::pair<int, std::uint64_t>> elementTypeCounts;
    std::vector<MeshBlockRow> blocks;
};

/// One checksum over all rows; through the blocks' own checksums it stands for the whole document.
std::string contentChecksum(const DocumentRows& rows);

/// Turns records, result files, units and the key sequence into rows; the rows of the mesh are left empty.
DocumentRows rowsOf(ModelDatabase::State& state);
/// Takes over what rowsOf wrote. Every row is checked.
Result<void> takeRows(const DocumentRows& rows, ModelDatabase::State& state);

/// Counts, bounds and types of a mesh as they stand in a document.
void addMeshSummary(const MeshData& mesh, DocumentRows& rows);
Result<DocumentSummary> summaryOf(const DocumentRows& rows);
/// The number under `name`, in [0, 2^53].
Result<std::uint64_t> countOf(const DocumentRows& rows, const std::string& name);

/// The three write inside the connection's open transaction.
Result<void> createTables(const SqliteConnection& connection);
Result<void> writeRecords(const SqliteConnection& connection, const std::vector<RecordRow>& records);
/// Writes the tables that are short, with the checksum of all rows.
Result<void> writeSmallTables(const SqliteConnection& connection, const DocumentRows& rows);

/// Reads all rows and checks what kind of file they stand in. Their checksum is for the caller to compare.
Result<DocumentRows> readRows(const SqliteConnection& connection);

} // namespace workbench
