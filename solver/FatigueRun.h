#pragma once

#include "base/Result.h"
#include "solver/Program.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>

namespace solver {

struct RunSettings {
    std::filesystem::path interfaceFile;
    std::string codePage;             ///< of the file's text; empty: UTF-8
    unsigned threads = 1;             ///< at least 1
    std::ostream* terminal = nullptr; ///< where progress is drawn; null when nobody watches
};

struct RunFailure {
    ExitCode code = kBadInput;
    Error error;
};

/// Reads the interface file, evaluates its nodes and writes the result file that it names; reports to `out`.
std::optional<RunFailure> runFatigue(const RunSettings& settings, std::ostream& out);

} // namespace solver
