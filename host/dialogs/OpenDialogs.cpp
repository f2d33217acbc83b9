#include "host/dialogs/OpenDialogs.h"

#include "framework/windows/WindowFunctions.h"
#include "framework/windows/WindowRecord.h"
#include "host/dialogs/InternationalDlg.h"

#include <vector>

namespace {

void collectDialogs(HWND window, std::vector<HWND>& dialogs) {
    const auto* record = framework::findWindow(window);
    if (dynamic_cast<CInternationalDlg*>(record->object)) dialogs.push_back(window);
    for (const HWND child : record->children)
        collectDialogs(child, dialogs);
}

bool isOpen(HWND dialog) {
    const auto* record = framework::findWindow(dialog);
    return record && record->routed && !record->creating && !record->destroying;
}

} // namespace

UINT openDialogsMessage() {
    return RegisterWindowMessage(L"VEXA host notice to dialogs");
}

void tellOpenDialogs(const DialogNotice& notice) {
    std::vector<HWND> dialogs;
    for (const HWND window : framework::topLevelWindows())
        collectDialogs(window, dialogs);
    for (const HWND dialog : dialogs)
        if (isOpen(dialog)) SendMessage(dialog, openDialogsMessage(), 0, reinterpret_cast<LPARAM>(&notice));
}
