#include "framework/windows/dialogs/DataExchange.h"
#include "framework/windows/dialogs/Dialog.h"
#include "framework/windows/dialogs/Navigation.h"
#include "tests/framework/windows/WindowTest.h"
#include "tests/support/RandomIntegers.h"

namespace {

using namespace framework;

RandomIntegers* g_random = nullptr;
int g_living = 0;
bool g_calm = false; ///< handlers behave, so that a round can end

/// A dialog that owns itself and whose handlers do anything.
class Erratic : public CDialog {
  public:
    Erratic()
        : CDialog(IDD_CONTROLS) {
        ++g_living;
    }
    ~Erratic() override { --g_living; }
    using CDialog::IsModal;

    int OnInitDialog() override {
        CDialog::OnInitDialog();
        for (int i = 0; i < 4; ++i) {
            if (auto* combo = item<CComboBox>(IDC_KIND)) combo->AddString(std::to_wstring(i));
            if (auto* list = item<CListBox>(IDC_LIST)) list->AddString(std::to_wstring(i));
            if (auto* table = item<CListCtrl>(IDC_TABLE)) table->InsertItem(0, std::to_wstring(i));
            if (auto* tabs = item<CTabCtrl>(IDC_TABS)) tabs->InsertItem(0, std::to_wstring(i));
        }
        misbehave();
        return 1;
    }

  protected:
    int OnCommand(WPARAM wParam, LPARAM lParam) override {
        const HWND window = m_hWnd;
        misbehave();
        return !::IsWindow(window) || CDialog::OnCommand(wParam, lParam);
    }
    int OnNotify(WPARAM, LPARAM, LRESULT* result) override {
        *result = g_random->oneIn(3);
        misbehave();
        return 1;
    }
    void DoDataExchange(CDataExchange* exchange) override {
        if (!m_bound) {
            DDX_Control(exchange, IDC_CHECKS, m_checks);
            m_bound = true;
        }
        double factor = 0;
        if (::GetDlgItem(m_hWnd, IDC_FACTOR)) DDX_Text(exchange, IDC_FACTOR, factor);
    }
    void OnOK() override { close(IDOK); }
    void OnCancel() override { close(IDCANCEL); }
    void PostNcDestroy() override {
        if (!IsModal()) delete this;
    }

  private:
    template <class Control>
    Control* item(int id) {
        return static_cast<Control*>(GetDlgItem(id));
    }
    void close(int answer) {
        if (IsModal())
            EndDialog(answer);
        else
            DestroyWindow();
    }
    void misbehave();
    CCheckListBox m_checks;
    bool m_bound = false;
};

HWND anyControl(HWND dialog) {
    const auto controls = controlsInTabOrder(dialog);
    return controls.empty() ? nullptr : controls[g_random->below(controls.size())];
}

void Erratic::misbehave() {
    if (g_calm) return;
    const HWND control = anyControl(m_hWnd);
    switch (g_random->below(28)) {
    case 0:
        DestroyWindow();
        return;
    case 1:
        throw std::runtime_error("erratic");
    case 2:
        ::DestroyWindow(control);
        return;
    case 3:
    case 4:
        ::ShowWindow(control, g_random->oneIn(2) ? SW_SHOW : SW_HIDE);
        return;
    case 5:
    case 6:
        ::EnableWindow(control, g_random->oneIn(2));
        return;
    case 7:
        ::SetFocus(control);
        return;
    case 8:
        UpdateData(g_random->oneIn(2));
        return;
    case 9:
        if (g_living < 4) Erratic().DoModal();
        return;
    case 10:
        if (g_living < 6)
            if (auto* other = new Erratic; !other->Create(IDD_CONTROLS, g_random->oneIn(2) ? this : nullptr))
                delete other;
        return;
    case 11:
        SetDlgItemText(IDC_NAME, L"text");
        return;
    case 12:
        if (auto* combo = item<CComboBox>(IDC_KIND)) combo->ResetContent();
        if (auto* table = item<CListCtrl>(IDC_TABLE)) table->DeleteItem(0);
        return;
    case 13:
        PostMessage(WM_COMMAND, MAKEWPARAM(static_cast<UINT>(IDOK), 0));
        return;
    default:
        return;
    }
}

/// What a user may do, possible or not.
void actAnyhow() {
    const auto windows = topLevelWindows();
    if (windows.empty()) return;
    const HWND dialog = windows[g_random->below(windows.size())];
    const HWND control = anyControl(dialog);
    const int index = static_cast<int>(g_random->below(5));
    constexpr WPARAM kKeys[] = {VK_TAB,  VK_RETURN, VK_ESCAPE, VK_SPACE, VK_UP,
                                VK_DOWN, VK_LEFT,   VK_END,    VK_BACK};
    switch (g_random->below(13)) {
    case 0:
        user::press(control);
        break;
    case 1:
        user::choose(control, index);
        break;
    case 2:
        user::select(control, {index});
        break;
    case 3:
        user::type(control, L"1x2");
        break;
    case 4:
        user::checkItem(control, index, g_random->oneIn(2));
        break;
    case 5:
        user::spin(control, index - 2);
        break;
    case 6:
        user::mouse(control, g_random->oneIn(2) ? WM_LBUTTONDOWN : WM_LBUTTONUP, CPoint(1, 1));
        break;
    case 7:
        user::close(dialog);
        break;
    case 8:
        pressMnemonic(L"nfulvkap"[g_random->below(8)]);
        break;
    case 9:
        ShowWindow(dialog, g_random->oneIn(4) ? SW_HIDE : SW_SHOW);
        break;
    case 10:
        user::doubleClickItem(control, index);
        break;
    case 11:
        pumpMessages();
        break;
    default:
        pressKey(kKeys[g_random->below(std::size(kKeys))], g_random->oneIn(4) ? MK_SHIFT : 0);
    }
}

/// Whatever users and handlers do: no window is reached after its end, every object is deleted once, and
/// focus and activation are where windows can be used.
TEST_F(WindowTest, AnyActionsOnErraticDialogs) {
    RandomIntegers random;
    g_random = &random;
    SCOPED_TRACE(random.seedText());
    for (int round = 0; round < 400; ++round) {
        if (auto* dialog = new Erratic; dialog->Create(IDD_CONTROLS))
            dialog->ShowWindow(SW_SHOW);
        else
            delete dialog;
        for (int i = 0; i < 4; ++i)
            scriptedDesk().addStep(actAnyhow);
        for (int i = 0; i < 30; ++i) {
            actAnyhow();
            const HWND focus = GetFocus();
            ASSERT_TRUE(!focus || topLevelOf(focus) == GetActiveWindow());
            ASSERT_TRUE(!GetActiveWindow() || IsWindow(GetActiveWindow()));
        }
        scriptedDesk().clear();
        g_calm = true;
        for (const HWND window : topLevelWindows())
            DestroyWindow(window);
        g_calm = false;
        ASSERT_EQ(g_living, 0);
    }
    ASSERT_EQ(windowState().depth, 0);
    ASSERT_EQ(windowState().lockedOut, nullptr);
}

} // namespace
