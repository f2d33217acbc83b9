#include "module/fatigue/SolverLaunch.h"

#include "framework/text/Format.h"

namespace fatigue {

std::wstring solverExePath(const std::wstring& programPath) {
    return framework::formatWide(L"%s64bit Solver\\%s", programPath, L"FatigueSolver.exe");
}

std::wstring solverCommandLine(const std::wstring& exePath, const std::wstring& interfaceFilePath) {
    return framework::formatWide(L"%s \"%s\"", exePath, interfaceFilePath);
}

std::wstring registeredName(const std::wstring& resultFileStem) {
    return resultFileStem + L".lmop";
}

std::wstring solverResultName(const std::wstring& resultFileStem) {
    return framework::formatWide(L"%s_Fatigue.%s", resultFileStem, L"lmop");
}

/// A file that the solver left under the registered name is not touched, whatever else it left.
ResultAction resultAction(bool registeredExists, bool solverResultExists) {
    return !registeredExists && solverResultExists ? ResultAction::Rename : ResultAction::Leave;
}

} // namespace fatigue
