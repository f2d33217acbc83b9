#pragma once

#include "base/Result.h"
#include "workbench/import/SolverDeck.h"

#include <filesystem>
#include <string_view>

namespace workbench {

/// Reads a CalculiX deck with the files that it includes. Names and keywords are compared without regard to
/// case; cards may stand in any order. What the reader does not take over is named in a warning of the deck.
/// Fails with "file:line: ..." on broken numbers, numbers given twice, references to what is not there.
Result<SolverDeck> readInp(const std::filesystem::path& path);

/// The same over bytes; `name` stands for the file in messages, and included files are looked for in
/// `folder`.
Result<SolverDeck> readInpText(std::string_view bytes, const std::string& name,
                               const std::filesystem::path& folder);

} // namespace workbench
