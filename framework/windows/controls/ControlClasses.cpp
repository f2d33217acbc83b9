#include "framework/windows/controls/ControlClasses.h"

#include "framework/windows/FocusRules.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/controls/Button.h"
#include "framework/windows/controls/ComboBox.h"
#include "framework/windows/controls/Edit.h"
#include "framework/windows/controls/ListBox.h"
#include "framework/windows/controls/ListCtrl.h"
#include "framework/windows/controls/SpinButtonCtrl.h"
#include "framework/windows/controls/Static.h"
#include "framework/windows/controls/TabCtrl.h"
#include "framework/windows/dialogs/Dialog.h"

namespace framework {
namespace {

LRESULT staticProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == WM_GETDLGCODE ? LRESULT{DLGC_STATIC}
                                    : defaultProcedure(window, message, wParam, lParam);
}

template <class Object>
std::unique_ptr<CWnd> make() {
    return std::make_unique<Object>();
}

} // namespace

std::deque<WindowClass> controlClasses() {
    return {
        {kPlainClass, defaultProcedure, make<CWnd>, ControlKind::kPlain},
        {L"#32770", dialogProcedure, make<CDialog>, ControlKind::kDialog},
        {L"Static", staticProcedure, make<CStatic>, ControlKind::kStatic},
        {L"Edit", editProcedure, make<CEdit>, ControlKind::kEdit},
        {L"Button", buttonProcedure, make<CButton>, ControlKind::kButton},
        {L"ComboBox", comboProcedure, make<CComboBox>, ControlKind::kCombo},
        {L"ListBox", listProcedure, make<CListBox>, ControlKind::kList},
        {L"SysListView32", listControlProcedure, make<CListCtrl>, ControlKind::kListControl},
        {L"SysTabControl32", tabProcedure, make<CTabCtrl>, ControlKind::kTab},
        {L"msctls_updown32", spinProcedure, make<CSpinButtonCtrl>, ControlKind::kSpin},
    };
}

std::wstring mnemonicText(HWND control) {
    const auto* record = findWindow(control);
    if (!record) return {};
    const ControlKind kind = record->windowClass->kind;
    const bool shown =
        kind == ControlKind::kButton || (kind == ControlKind::kStatic && !(record->style & SS_NOPREFIX));
    return shown ? record->text : std::wstring();
}

} // namespace framework
