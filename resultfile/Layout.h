#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

/// Names in a result file, described in docs/result-file.md.
namespace resultfile::layout {

inline constexpr const char* kFormatName = "VEXA result file";
inline constexpr int kFormatVersion = 1;

// Root attributes.
inline constexpr const char* kFormat = "format";
inline constexpr const char* kVersion = "version";
inline constexpr const char* kAnalysis = "analysis";
inline constexpr const char* kProducer = "producer";
inline constexpr const char* kInputChecksum = "input_checksum";

// Groups and the mesh's datasets.
inline constexpr const char* kMesh = "mesh";
inline constexpr const char* kNodeNumbers = "node_numbers";
inline constexpr const char* kElementNumbers = "element_numbers";
inline constexpr const char* kElementCornerCounts = "element_corner_counts";
inline constexpr const char* kItemLists = "items";
inline constexpr const char* kSources = "sources";
inline constexpr const char* kCases = "cases";
inline constexpr const char* kSteps = "steps";

// Attributes of cases, steps, item lists and components.
inline constexpr const char* kName = "name";
inline constexpr const char* kValue = "value";
inline constexpr const char* kLocation = "location";
inline constexpr const char* kItems = "items";
inline constexpr const char* kChecksum = "checksum";

/// Longest text that the format stores, in bytes of UTF-8.
inline constexpr std::size_t kLongestText = 4096;
/// Most cases and sources of a file, steps of a case, tables of a step and item lists of a file: what HDF5
/// keeps in the header of a group.
inline constexpr unsigned kMostMembers = 65535;

/// Name of the member at `index`, from zero: "000001", "000002", ... so that the order of names is the order
/// of members.
inline std::string memberName(std::size_t index) {
    char text[24];
    std::snprintf(text, sizeof text, "%06zu", index + 1);
    return text;
}

} // namespace resultfile::layout
