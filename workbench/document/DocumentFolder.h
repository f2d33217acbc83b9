#pragma once

#include "base/Result.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace workbench {

/// What the names of result files begin with that are made of other results: combinations, local safety.
inline constexpr const char* kCombinedPrefix = "_RCB_";
inline constexpr const char* kSafetyPrefix = "_SFT_";

/// The result files that the documents in a folder have registered; relative ones as absolute paths.
struct FolderReferences {
    std::set<std::filesystem::path> files;
    /// Documents that could not be read, so that nobody knows what they refer to.
    std::vector<std::filesystem::path> unreadable;
};

/// Reads all documents (.wkm) in a folder but `except`.
FolderReferences referencesIn(const std::filesystem::path& folder, const std::filesystem::path& except = {});

/// Result files in the document's folder whose names the programs make from the document's name, "a_X.lmop"
/// beside "a.wkm", or give to what they make of results, "_RCB_X.lmop". In order of their names.
std::vector<std::filesystem::path> resultFilesBeside(const std::filesystem::path& document);

/// Temporary files beside a document that were to become it or one of those result files. In order of names.
std::vector<std::filesystem::path> temporaryFilesBeside(const std::filesystem::path& document);

/// A registered path as it is found on the disk; `folder` is the document's.
std::filesystem::path registeredFile(const std::filesystem::path& folder, const std::string& path);

} // namespace workbench
