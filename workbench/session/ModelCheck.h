#pragma once

#include "workbench/document/Finding.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace workbench {

/// What is being checked, and how much of the bytes of all files is done, 0 to 1.
using CheckProgress = std::function<void(const std::string& what, double fraction)>;

/// What a check of a document and its result files found.
struct ModelCheckReport {
    Findings faults;         ///< something is wrong
    Findings notes;          ///< worth knowing, and right
    bool isReadable = false; ///< whether the document's records could be read, so that there are counts
    std::uint64_t nodes = 0;
    std::uint64_t elements = 0;
    std::uint64_t records = 0;
    std::uint64_t resultFiles = 0; ///< registered ones
    std::uint64_t tables = 0;      ///< read whole
    std::uint64_t values = 0;
    std::uint64_t bytes = 0; ///< of the document and its result files
};

/// Checks a document, its result files, what fatigue definitions expect of them, and the files beside it.
/// Each table is read once, in pieces. Nothing is changed, but for a save that was cut short: opening takes
/// it back.
ModelCheckReport checkModel(const std::filesystem::path& path, const CheckProgress& progress = {});

} // namespace workbench
