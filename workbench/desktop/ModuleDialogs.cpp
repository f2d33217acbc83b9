#include "workbench/desktop/ModuleDialogs.h"

#include "module/entry/VEXAGpsDialog.h"

#include <algorithm>
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
