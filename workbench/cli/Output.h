#pragma once

#include "base/Result.h"
#include "workbench/cli/Commands.h"
#include "workbench/session/Document.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::cli {

/// Prints "error: ..." and answers the exit code of a failure.
int fail(const Error& error);
int fail(const std::string& message);

/// Opens a document with its mesh and takes over its units and those asked for on the command line.
Result<std::unique_ptr<Document>> openForCommand(WorkbenchHost& host, const std::filesystem::path& path,
                                                 const CommonOptions& common);

/// The current unit system becomes what the command line asks for, else the document's.
Result<void> applyUnits(WorkbenchHost& host, ModelDatabase& database, const CommonOptions& common);

/// The shortest text that reads back as the same float, in the C locale.
std::string numberText(float value);

/// A CSV field: quoted where it has a comma, a quote or a line end.
std::string csvField(std::string_view text);

/// A table for people: columns padded to their widest text (characters, wide ones counted twice), numbers
/// to the right.
class TextTable {
  public:
    explicit TextTable(std::vector<std::string> header) { rows_.push_back(std::move(header)); }
    void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
    std::string text() const;

  private:
    std::vector<std::vector<std::string>> rows_;
};

/// Writes a text to a file, whole or not at all; to the standard output for an empty path.
Result<void> writeText(const std::string& text, const std::filesystem::path& path);

} // namespace workbench::cli
