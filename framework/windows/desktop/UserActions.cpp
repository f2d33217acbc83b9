#include "framework/windows/desktop/UserActions.h"

#include "framework/windows/FocusRules.h"
#include "framework/windows/Keyboard.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowFunctions.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/controls/ComboBox.h"
#include "framework/windows/controls/ItemList.h"
#include "framework/windows/controls/ListBox.h"
#include "framework/windows/controls/ListCtrl.h"
#include "framework/windows/controls/SpinButtonCtrl.h"
#include "framework/windows/controls/TabCtrl.h"

namespace framework::user {
namespace {

/// Gives a usable control of the kind the focus. False when it cannot be used, or a handler took it away.
bool approach(HWND window, ControlKind kind) {
    if (!canUse(window) || kindOf(window) != kind) return false;
    SetFocus(window);
    return canUse(window);
}

bool hasItem(HWND list, int index) {
    return itemAt(findWindow(list), index) != nullptr;
}

} // namespace

bool canUse(HWND window) {
    return IsWindowVisible(window) && isEnabledWithParents(window);
}

bool press(HWND button) {
    const auto* record = findWindow(button);
    if (!record || (record->style & BS_TYPEMASK) == BS_GROUPBOX) return false;
    if (!approach(button, ControlKind::kButton)) return false;
    SendMessage(button, BM_CLICK);
    return true;
}

bool check(HWND button, bool on) {
    if (!canUse(button) || kindOf(button) != ControlKind::kButton) return false;
    const UINT type = findWindow(button)->style & BS_TYPEMASK;
    const bool radio = type == BS_AUTORADIOBUTTON || type == BS_RADIOBUTTON;
    const bool box =
        type == BS_AUTOCHECKBOX || type == BS_CHECKBOX || type == BS_AUTO3STATE || type == BS_3STATE;
    if ((!radio && !box) || (radio && !on)) return false;
    const auto isOn = [&] { return SendMessage(button, BM_GETCHECK) == BST_CHECKED; };
    // A box of three states may need a second press.
    for (int presses = 0; presses < 2 && IsWindow(button) && isOn() != on; ++presses)
        if (!press(button)) return false;
    return true;
}

bool choose(HWND combo, int index) {
    if (!hasItem(combo, index) || !approach(combo, ControlKind::kCombo)) return false;
    framework::dropDown(combo, false);
    return !canUse(combo) || chooseItem(combo, index);
}

bool dropDown(HWND combo, bool open) {
    if (!approach(combo, ControlKind::kCombo)) return false;
    framework::dropDown(combo, open);
    return true;
}

bool select(HWND list, const std::vector<int>& indices) {
    for (const int index : indices)
        if (!hasItem(list, index)) return false;
    if (approach(list, ControlKind::kList)) return selectItems(list, indices);
    if (approach(list, ControlKind::kListControl)) return selectRows(list, indices);
    return indices.size() == 1 && approach(list, ControlKind::kTab) && selectTab(list, indices[0]);
}

bool checkItem(HWND list, int index, bool on) {
    if (approach(list, ControlKind::kList)) return framework::checkItem(list, index, on);
    return approach(list, ControlKind::kListControl) && checkRow(list, index, on);
}

bool doubleClickItem(HWND list, int index) {
    if (approach(list, ControlKind::kListControl)) return doubleClickRow(list, index);
    if (!approach(list, ControlKind::kList) || !selectItems(list, {index})) return false;
    notifyParent(list, LBN_DBLCLK);
    return true;
}

bool clickColumn(HWND list, int column) {
    return approach(list, ControlKind::kListControl) && framework::clickColumn(list, column);
}

bool spin(HWND spinButton, int steps) {
    return canUse(spinButton) && kindOf(spinButton) == ControlKind::kSpin && spinBy(spinButton, steps);
}

bool type(HWND edit, const std::wstring& text) {
    const bool writable = kindOf(edit) == ControlKind::kCombo
                              ? hasEdit(edit)
                              : !(findWindow(edit) && (findWindow(edit)->style & ES_READONLY));
    if (!writable || !(approach(edit, ControlKind::kEdit) || approach(edit, ControlKind::kCombo)))
        return false;
    SendMessage(edit, EM_SETSEL, 0, -1);
    if (text.empty() && !windowText(edit).empty()) typeCharacter(L'\b');
    for (const wchar_t c : text)
        if (GetFocus() == edit) typeCharacter(c); // a handler may move the focus away in the middle of a word
    return true;
}

bool paste(HWND edit, const std::wstring& text) {
    if (!canUse(edit) || kindOf(edit) != ControlKind::kEdit || (findWindow(edit)->style & ES_READONLY))
        return false;
    SendMessage(edit, EM_SETSEL, 0, -1);
    SendMessage(edit, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(text.c_str()));
    return true;
}

bool close(HWND topLevel) {
    if (!canUse(topLevel) || findWindow(topLevel)->parent) return false;
    SendMessage(topLevel, WM_CLOSE);
    return true;
}

bool mouse(HWND window, UINT message, CPoint point, UINT keys) {
    if (!canUse(window)) return false;
    if (const HWND captured = GetCapture(); captured && captured != window && canUse(captured)) {
        ClientToScreen(window, &point);
        ScreenToClient(captured, &point);
        window = captured;
    }
    if (message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN) {
        SetActiveWindow(topLevelOf(window));
        if (!canUse(window)) return true;
    }
    SendMessage(window, message, keys, MAKELPARAM(point.x, point.y));
    return true;
}

} // namespace framework::user
