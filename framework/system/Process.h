#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <optional>
#include <string>

namespace framework {

/// A program to start and wait for.
struct ProcessRequest {
    std::wstring program;     ///< path of the program, as nativePath takes it
    std::wstring argument;    ///< its only argument, blanks and all, as it stands
    std::wstring commandLine; ///< what a platform that starts programs by command line gets instead
};

/// How a child process ended.
struct ProcessEnd {
    std::wstring program;
    std::int64_t exitCode = 0; ///< when it ended by itself; -1 when the system did not tell
    int signal = 0;            ///< when a signal ended it (never on Windows)
};

/// Starts the program hidden, without inherited handles, in the caller's folder and environment, and waits
/// for its end without a time limit. Zero when it could not be started. Outside Windows the child reads
/// nothing and all that it prints goes to the error output, so that it cannot mix with what the caller
/// prints.
VEXA_API int runProcess(const ProcessRequest& request);

/// How the last child that runProcess waited for ended; empty when the last one could not be started, or none
/// ran.
VEXA_API const std::optional<ProcessEnd>& lastProcessEnd();

/// The sentence of the system for the last failed start; empty after a start that worked.
VEXA_API const std::wstring& lastProcessFailure();

/// Forgets both, so that what they answer next belongs to a later start.
VEXA_API void forgetLastProcess();

} // namespace framework
