#include "workbench/session/SafetyHistories.h"

#include "framework/files/PathMap.h"
#include "host/FileCtrl.h"

#include <algorithm>
#include <filesystem>

namespace workbench {

std::vector<std::wstring> safetyHistoryNames(const Document& document) {
    const std::wstring path = document.GetFullPathNameW();
    const std::wstring begin = CFileCtrl::GetFileName(path) + L"_";
    constexpr std::wstring_view kEnd = L"_fos.out";
    std::vector<std::wstring> names;
    std::error_code code;
    const auto folder = framework::nativePath(CFileCtrl::GetFilePath(path));
    for (const auto& entry : std::filesystem::directory_iterator(folder, code)) {
        const std::wstring file = framework::widePath(entry.path().filename());
        if (file.size() >= begin.size() + kEnd.size() && file.starts_with(begin) && file.ends_with(kEnd) &&
            entry.is_regular_file(code))
            names.push_back(file.substr(begin.size(), file.size() - begin.size() - kEnd.size()));
    }
    std::ranges::sort(names);
    return names;
}

} // namespace workbench
