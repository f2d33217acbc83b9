#pragma once

#include "base/Result.h"
#include "workbench/document/ModelDatabase.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace workbench {

/// Counts and names of a document, read without its mesh.
struct DocumentSummary {
    int schemaVersion = 0;
    std::uint64_t nodeCount = 0;
    std::uint64_t elementCount = 0;
    std::array<double, 6> bounds{}; ///< xmin, ymin, zmin, xmax, ymax, zmax; zero without nodes
    std::vector<std::pair<int, std::uint64_t>> elementTypeCounts;
    DocumentUnits units;
};

/// Opens a `.wkm` document with its mesh and checks every block against its checksum.
Result<std::unique_ptr<ModelDatabase>> openDocument(const std::filesystem::path& path);
/// Likewise, with what the document states about itself in short.
Result<std::unique_ptr<ModelDatabase>> openDocument(const std::filesystem::path& path,
                                                    DocumentSummary& summary);

/// Opens a document without its mesh (mesh() is then empty and must not be saved back): for `info`.
Result<std::unique_ptr<ModelDatabase>> openDocumentRecords(const std::filesystem::path& path,
                                                           DocumentSummary& summary);

/// Saves a document: the file at `path` is the old or the new one at any moment. Over the file that
/// `database` was read from or last saved to, it writes only what changed as long as the mesh did not, and
/// refuses to when another program has changed the file since. Refused, too, in an open transaction.
Result<void> saveDocument(ModelDatabase& database, const std::filesystem::path& path);

/// Likewise over the file that `database` came from, and over no other. `whileLocked` is called before
/// anything is written, when the file is locked against other writers and known to be unchanged; what it
/// changes in the database is saved.
Result<void> saveDocument(ModelDatabase& database, const std::filesystem::path& path,
                          const std::function<void()>& whileLocked);

/// Whether the file that `database` came from could be saved to now, and is still the one that it knows: for
/// whoever is about to work long for a save at the end.
Result<void> checkSavable(const ModelDatabase& database);

} // namespace workbench
