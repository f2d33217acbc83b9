#pragma once

#include <ostream>
#include <span>
#include <string>

namespace solver {

/// How the program ends.
enum ExitCode : int {
    kDone = 0,
    kBadInput = 1,    ///< the interface file is missing, broken or asks for something that is not supported
    kBadUsage = 2,    ///< wrong arguments
    kCannotWrite = 3, ///< the result cannot be written, or the system lacks memory or threads
};

/// The whole program: `arguments` without the program's name, UTF-8. What was done and what was left out goes
/// to `out`, a failure as one sentence to `err`. The text of the file's first record is read in `codePage`
/// (empty: UTF-8). Progress is drawn on `terminal`, when there is one.
int run(std::span<const std::string> arguments, const std::string& codePage, std::ostream& out,
        std::ostream& err, std::ostream* terminal = nullptr);

} // namespace solver
