#include "module/fatigue/FileNames.h"

namespace fatigue {

FileNames fileNames(const std::wstring& docPathStem, const std::wstring& analysisName,
                    const std::wstring& resultAnalysisName) {
    const std::wstring base = docPathStem + L"_" + analysisName;
    const std::size_t separator = base.find_last_of(L"\\/");
    const std::wstring folder = separator == std::wstring::npos ? L"" : base.substr(0, separator + 1);
    return {docPathStem + L"_" + resultAnalysisName, base + L".lmop", folder + L"FATIGUE.76",
            base + L"_FATIGUE_76.txt"};
}

} // namespace fatigue
