#include "framework/windows/controls/Button.h"

#include "framework/windows/FocusRules.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "framework/windows/dialogs/Navigation.h"

namespace framework {
namespace {

UINT typeOf(const WindowRecord& record) {
    return record.style & BS_TYPEMASK;
}

bool isPush(const WindowRecord& record) {
    const UINT type = typeOf(record);
    return type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON || type == BS_OWNERDRAW;
}

void click(HWND window) {
    const auto* record = findWindow(window);
    if (!record || typeOf(*record) == BS_GROUPBOX || !isEnabledWithParents(window)) return;
    switch (typeOf(*record)) {
    case BS_AUTOCHECKBOX:
        setCheck(window, record->check == BST_UNCHECKED ? BST_CHECKED : BST_UNCHECKED);
        break;
    case BS_AUTO3STATE:
        setCheck(window, (record->check + 1) % 3);
        break;
    case BS_AUTORADIOBUTTON:
        checkRadio(window);
        break;
    default:
        break;
    }
    notifyParent(window, BN_CLICKED);
}

UINT dialogCode(const WindowRecord& record) {
    if (typeOf(record) == BS_GROUPBOX) return DLGC_STATIC;
    if (isRadioButton(record.handle)) return DLGC_BUTTON | DLGC_RADIOBUTTON;
    if (!isPush(record)) return DLGC_BUTTON;
    return DLGC_BUTTON | (typeOf(record) == BS_DEFPUSHBUTTON ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
}

} // namespace

bool isRadioButton(HWND window) {
    const auto* record = findWindow(window);
    if (!record || record->windowClass->kind != ControlKind::kButton) return false;
    return typeOf(*record) == BS_AUTORADIOBUTTON || typeOf(*record) == BS_RADIOBUTTON;
}

void setCheck(HWND button, int check) {
    auto* record = findWindow(button);
    if (!record || record->check == check) return;
    record->check = check;
    windowChanged(button, change::kContent);
}

void checkRadio(HWND button) {
    for (const HWND member : groupOf(button))
        if (isRadioButton(member)) setCheck(member, member == button ? BST_CHECKED : BST_UNCHECKED);
}

LRESULT buttonProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* record = findWindow(window);
    if (!record) return 0;
    switch (message) {
    case BM_GETCHECK:
        return record->check;
    case BM_SETCHECK:
        setCheck(window, static_cast<int>(wParam));
        return 0;
    case BM_CLICK:
        click(window);
        return 0;
    case WM_LBUTTONDOWN:
        SetFocus(window);
        SetCapture(window);
        return 0;
    case WM_LBUTTONUP: {
        const bool pressed = GetCapture() == window;
        if (pressed) ReleaseCapture();
        CRect client;
        GetClientRect(window, &client);
        if (pressed && client.PtInRect(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)))) click(window);
        return 0;
    }
    case WM_CHAR:
        if (wParam == VK_SPACE) click(window);
        return 0;
    case WM_GETDLGCODE:
        return dialogCode(*record);
    default:
        return defaultProcedure(window, message, wParam, lParam);
    }
}

} // namespace framework

int CButton::GetCheck() const {
    const auto* record = Record();
    return record ? record->check : 0;
}

void CButton::SetCheck(int check) {
    SendMessage(BM_SETCHECK, static_cast<WPARAM>(check));
}

void CButton::SetButtonStyle(UINT style, int) {
    ModifyStyle(BS_TYPEMASK, style & BS_TYPEMASK);
}
