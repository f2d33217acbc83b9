#pragma once

#include <string>

namespace fatigue {

/// Path of the solver below the host's program folder, which ends with a separator.
std::wstring solverExePath(const std::wstring& programPath);

/// The program's path as it is, a blank, the interface file in double quotes. A program path with blanks is
/// not quoted: the platform finds the program by trying the parts.
std::wstring solverCommandLine(const std::wstring& exePath, const std::wstring& interfaceFilePath);

/// The two names under which the solver may leave its result.
std::wstring registeredName(const std::wstring& resultFileStem);
std::wstring solverResultName(const std::wstring& resultFileStem);

/// What is to be done with the file under the solver's name once the solver has ended.
enum class ResultAction { Leave, Rename };
ResultAction resultAction(bool registeredExists, bool solverResultExists);

} // namespace fatigue
