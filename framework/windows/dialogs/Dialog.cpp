#include "framework/windows/dialogs/Dialog.h"

#include "framework/windows/FocusRules.h"
#include "framework/windows/WinThread.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "framework/windows/dialogs/DialogTemplate.h"
#include "framework/windows/dialogs/Navigation.h"

#include <utility>
#include <vector>

using framework::findWindow;

BEGIN_MESSAGE_MAP(CDialog, CWnd)
ON_MESSAGE(WM_INITDIALOG, &CDialog::HandleInitDialog)
ON_COMMAND(IDOK, &CDialog::OnOK)
ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

namespace {

/// Windows that cannot be used while a modal dialog is open.
class DisabledWindows {
  public:
    void add(HWND window) {
        if (IsWindowEnabled(window) && !EnableWindow(window, 0)) disabled_.push_back(window);
    }
    void enable() {
        for (const HWND window : std::exchange(disabled_, {}))
            EnableWindow(window, 1);
    }
    ~DisabledWindows() { enable(); }
    DisabledWindows() = default;
    DisabledWindows(const DisabledWindows&) = delete;
    DisabledWindows& operator=(const DisabledWindows&) = delete;

  private:
    std::vector<HWND> disabled_;
};

/// Where a dialog stands: as the template says, in the client area of its owner or of its parent.
CRect placeOf(const framework::DialogTemplate& resource, HWND parent, int border) {
    CRect rect = framework::dialogToPixels(resource.rect);
    rect.right += 2 * border;
    rect.bottom += 2 * border;
    CPoint corner = rect.TopLeft();
    if (!(resource.style & WS_CHILD)) ClientToScreen(framework::topLevelOf(parent), &corner);
    return {corner, rect.Size()};
}

int borderOf(const framework::DialogTemplate& resource) {
    framework::WindowRecord frame;
    frame.style = resource.style;
    frame.exStyle = resource.exStyle;
    return framework::borderWidth(frame);
}

bool makeControls(HWND dialog, const framework::DialogTemplate& resource) {
    for (const auto& control : resource.controls) {
        const HWND made = framework::createWindow({control.className, control.text, control.style | WS_CHILD,
                                                   control.exStyle, framework::dialogToPixels(control.rect),
                                                   dialog, control.id},
                                                  nullptr);
        auto* record = findWindow(dialog);
        if (!made || !record) return false;
        const bool preferred = (SendMessage(made, WM_GETDLGCODE) & DLGC_DEFPUSHBUTTON) != 0;
        if (preferred && !record->defaultId) record->defaultId = control.id;
    }
    return true;
}

/// A place for the focus in a dialog: where it was, or the first tab stop.
void focusInside(HWND dialog) {
    const auto* record = findWindow(dialog);
    const bool remembered = IsChild(dialog, record->savedFocus) && framework::isUsable(record->savedFocus);
    const HWND control = remembered ? record->savedFocus : framework::nextTabItem(dialog, nullptr, false);
    if (control) {
        SetFocus(control);
        if (!remembered && (SendMessage(control, WM_GETDLGCODE) & DLGC_HASSETSEL))
            SendMessage(control, EM_SETSEL, 0, -1);
    } else if (GetFocus() != dialog) {
        SetFocus(dialog);
    }
}

void selectedFocus(HWND control) {
    SetFocus(control);
    if (SendMessage(control, WM_GETDLGCODE) & DLGC_HASSETSEL) SendMessage(control, EM_SETSEL, 0, -1);
}

} // namespace

namespace framework {

LRESULT dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* record = findWindow(window);
    if (!record) return 0;
    switch (message) {
    case WM_INITDIALOG:
        return 1;
    case WM_CLOSE: {
        const HWND button = GetDlgItem(window, IDCANCEL);
        if (!button || IsWindowEnabled(button))
            SendMessage(window, WM_COMMAND, static_cast<WPARAM>(IDCANCEL), reinterpret_cast<LPARAM>(button));
        return 0;
    }
    case WM_ACTIVATE:
        if (wParam != WA_INACTIVE) {
            if (!holdsFocus(window)) focusInside(window);
        } else if (IsChild(window, GetFocus())) {
            record->savedFocus = GetFocus();
        }
        return 0;
    case WM_SETFOCUS:
        focusInside(window);
        return 0;
    case DM_GETDEFID:
        return static_cast<LRESULT>(record->defaultId);
    case DM_SETDEFID:
        record->defaultId = static_cast<UINT>(wParam);
        windowChanged(window, change::kState);
        return 1;
    case WM_NEXTDLGCTL:
        selectedFocus(lParam ? reinterpret_cast<HWND>(wParam) : nextTabItem(window, GetFocus(), wParam != 0));
        return 0;
    default:
        return defaultProcedure(window, message, wParam, lParam);
    }
}

bool modalLoopEnded(HWND dialog) {
    const auto* record = findWindow(dialog);
    return !record || record->modalEnded;
}

} // namespace framework

int CDialog::Create(UINT templateId, CWnd* parent) {
    return CreateFromTemplate(templateId, parent ? parent : AfxGetMainWnd());
}

int CDialog::CreateFromTemplate(UINT templateId, CWnd* parent) {
    const auto* resource = framework::findTemplate(templateId);
    if (!resource) return 0;
    m_nTemplateId = templateId;
    const HWND above = parent ? parent->m_hWnd : nullptr;
    const HWND dialog =
        framework::createWindow({L"#32770", resource->title, resource->style & ~WS_VISIBLE, resource->exStyle,
                                 placeOf(*resource, above, borderOf(*resource)), above, 0},
                                this, true);
    if (!dialog) return 0;
    bool alive = makeControls(dialog, *resource);
    if (alive) {
        const bool unplaced = m_bModal && resource->rect.TopLeft() == CPoint();
        if (unplaced || (resource->style & DS_CENTER)) CenterWindow();
        const HWND first = framework::nextTabItem(dialog, nullptr, false);
        const auto focus = framework::deliver(dialog, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), 0);
        auto* record = findWindow(dialog);
        alive = focus.has_value() && record;
        if (alive && *focus && !framework::holdsFocus(dialog)) record->savedFocus = first;
        // Shown while it still counts as being created: a handler that destroys it now makes the creation
        // fail.
        if (alive && (resource->style & WS_VISIBLE) && !record->modalEnded) ::ShowWindow(dialog, SW_SHOW);
    }
    if (!alive) ::DestroyWindow(dialog);
    framework::completeCreation(dialog);
    return ::IsWindow(dialog);
}

INT_PTR CDialog::DoModal() {
    if (m_hWnd) return -1;
    CWnd* parent = m_pParentWnd ? m_pParentWnd : AfxGetMainWnd();
    CWnd* main = AfxGetMainWnd();
    const HWND before = ::GetActiveWindow();
    m_nModalResult = -1;
    m_bModal = true;
    DisabledWindows others;
    others.add(framework::topLevelOf(parent ? parent->m_hWnd : nullptr));
    others.add(framework::topLevelOf(main ? main->m_hWnd : nullptr));
    if (CreateFromTemplate(m_nTemplateId, parent)) {
        const HWND dialog = m_hWnd;
        if (!framework::modalLoopEnded(dialog)) ::ShowWindow(dialog, SW_SHOW);
        if (!framework::modalLoopEnded(dialog)) framework::desktop().RunModalLoop(dialog);
        // The owner can be active again before the dialog goes.
        others.enable();
        ::DestroyWindow(dialog);
    }
    // A dialog that was destroyed under its loop had nobody to hand the activation to.
    others.enable();
    if (!::GetActiveWindow() && ::IsWindowVisible(before)) ::SetActiveWindow(before);
    m_bModal = false;
    return m_nModalResult;
}

void CDialog::EndDialog(int result) {
    auto* record = Record();
    m_nModalResult = result;
    if (!record) return;
    record->modalEnded = true;
    if (!m_bModal) ShowWindow(SW_HIDE);
}

int CDialog::OnInitDialog() {
    UpdateData(0);
    return 1;
}

LRESULT CDialog::HandleInitDialog(WPARAM, LPARAM) {
    return OnInitDialog();
}

void CDialog::OnOK() {
    if (UpdateData(1)) EndDialog(IDOK);
}

void CDialog::OnCancel() {
    EndDialog(IDCANCEL);
}

void CDialog::GotoDlgCtrl(CWnd* control) {
    if (control) SendMessage(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control->m_hWnd), 1);
}

void CDialog::MapDialogRect(CRect* units) const {
    *units = framework::dialogToPixels(*units);
}

int CDialog::PreTranslateMessage(MSG* message) {
    if (CWnd::PreTranslateMessage(message)) return 1;
    // A page leaves navigation to the dialog it lies in.
    if (framework::navigatingDialog(m_hWnd) != m_hWnd) return 0;
    return framework::IsDialogMessage(m_hWnd, *message);
}
