#pragma once

#include "workbench/document/Finding.h"
#include "workbench/document/ModelDatabase.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace workbench {

/// What a look at the file of a document gave.
struct DocumentCheck {
    Findings faults;
    Findings notes;
    /// Null when not even the records can be read; without its mesh when only that is damaged.
    std::unique_ptr<ModelDatabase> database;
    bool meshIsWhole = false;
    std::uint64_t nodes = 0; ///< as the document states them
    std::uint64_t elements = 0;
};

/// Checks the file of a document: the database's own structure, the checksums, the mesh with its counts,
/// bounds and types, and the records. A save that was cut short is taken back by the opening, as by every
/// opening.
DocumentCheck checkDocument(const std::filesystem::path& path);

} // namespace workbench
