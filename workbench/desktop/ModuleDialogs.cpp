#include "workbench/desktop/ModuleDialogs.h"

#include "framework/files/PathMap.h"
#include "host/FileCtrl.h"
#include "module/entry/VEXAGpsDialog.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace workbench::desktop {
namespace {

constexpr ModuleDialog kDialogs[] = {
    {L"CVEXAGpsResultCombinationDlg", L"IDS_WB_DIALOG_COMBINATION", true},
    {L"CVEXAGpsResultsGraphDlg", L"IDS_WB_DIALOG_RESULTS_GRAPH", false},
    {L"CVEXAGpsAnalResult", L"IDS_WB_DIALOG_ANAL_RESULT", false},
    {L"CVEXAGpsDynamicResultsGraphDlg", L"IDS_WB_DIALOG_HISTORY", false},
    {L"CVEXAGpsDynamicResultsSelectDlg", L"IDS_WB_DIALOG_DYNAMIC_SELECT", false},
    {L"CVEXAGpsDynamicResultsPlotDlg", L"IDS_WB_DIALOG_DYNAMIC_PLOT", false},
    {L"CVEXAGpsSAMResultDlg", L"IDS_WB_DIALOG_SLOPE", false},
    {kSafetyGraphClass, L"IDS_WB_DIALOG_SAFETY", false},
    {L"CVEXAGpsStagewiseRelDispDlg", L"IDS_WB_DIALOG_STAGEWISE", false},
    {L"CGpsGenerateOptModelDlg", L"IDS_WB_DIALOG_OPT_MODEL", true},
    {L"CGpsResponseSurfaceDlg", L"IDS_WB_DIALOG_RESPONSE", true},
};

} // namespace

std::span<const ModuleDialog> moduleDialogs() {
    return kDialogs;
}

const ModuleDialog* findModuleDialog(const std::wstring& className) {
    const auto* found = std::ranges::find(
        kDialogs, className, [](const ModuleDialog& dialog) { return std::wstring(dialog.className); });
    return found == std::end(kDialogs) ? nullptr : found;
}

std::vector<std::wstring> safetyHistoryNames(const Document& document) {
    const std::wstring path = document.GetFullPathNameW();
    const std::wstring begin = CFileCtrl::GetFileName(path) + L"_";
    constexpr std::wstring_view kEnd = L"_fos.out";
    std::vector<std::wstring> names;
    std::error_code code;
    const auto folder = framework::nativePath(CFileCtrl::GetFilePath(path));
    for (const auto& entry : std::filesystem::directory_iterator(folder, code)) {
        const std::wstring file = framework::widePath(entry.path().filename());
        if (file.size() >= begin.size() + kEnd.size() && file.starts_with(begin) && file.ends_with(kEnd))
            names.push_back(file.substr(begin.size(), file.size() - begin.size() - kEnd.size()));
    }
    std::ranges::sort(names);
    return names;
}

void openModuleDialog(const ModuleDialog& dialog, Document& document, const std::wstring& argument) {
    const std::wstring name = dialog.className;
    std::wstring text = argument;
    void* first = name == kSafetyGraphClass                ? static_cast<void*>(text.data())
                  : name == L"CVEXAGpsStagewiseRelDispDlg" ? static_cast<void*>(document.GetActiveView())
                                                           : nullptr;
    if (dialog.modal)
        IVEXAGpsDialog::DoModal(&document, dialog.className, first, nullptr);
    else
        IVEXAGpsDialog::DoModeless(&document, dialog.className, first, nullptr);
}

} // namespace workbench::desktop
