#include "framework/windows/dialogs/Dialog.h"
#include "tests/framework/windows/WindowTest.h"

#include <map>

namespace {

using namespace framework;

/// Counts what its controls notify of, as "id:code".
class Notified : public CDialog {
  public:
    std::vector<std::string> notes;
    LRESULT answer = 0; ///< to WM_NOTIFY
    int delta = 0;      ///< when not 0: the step that UDN_DELTAPOS is changed to
    std::vector<int> checkedWhenNotified;

    std::string take() {
        std::string line;
        for (const auto& note : std::exchange(notes, {}))
            line += (line.empty() ? "" : " ") + note;
        return line;
    }

  protected:
    int OnCommand(WPARAM wParam, LPARAM lParam) override {
        const auto command = static_cast<LPARAM>(wParam);
        const UINT id = LOWORD(command);
        if (id == IDC_LINEAR || id == IDC_ENVELOPE)
            checkedWhenNotified.push_back(GetCheckedRadioButton(IDC_LINEAR, IDC_BOTH));
        note(id, static_cast<int>(HIWORD(command)));
        return CDialog::OnCommand(wParam, lParam);
    }
    int OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override {
        auto* header = reinterpret_cast<NMHDR*>(lParam);
        EXPECT_EQ(header->idFrom, wParam);
        note(static_cast<UINT>(wParam), static_cast<int>(header->code));
        if (header->code == UDN_DELTAPOS && delta) reinterpret_cast<NMUPDOWN*>(header)->iDelta = delta;
        *result = answer;
        return 1;
    }
    void OnVScroll(UINT code, UINT position, CWnd* from) {
        EXPECT_EQ(from->GetDlgCtrlID(), IDC_SPIN);
        notes.push_back("scroll" + std::to_string(code) + "@" + std::to_string(position));
    }
    DECLARE_MESSAGE_MAP()

  private:
    void note(UINT id, int code) { notes.push_back(std::to_string(id) + ":" + std::to_string(code)); }
};
BEGIN_MESSAGE_MAP(Notified, CDialog)
ON_WM_VSCROLL()
END_MESSAGE_MAP()

class Notifications : public WindowTest {
  protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        dialog.ShowWindow(SW_SHOW);
        combo = static_cast<CComboBox*>(dialog.GetDlgItem(IDC_KIND));
        list = static_cast<CListBox*>(dialog.GetDlgItem(IDC_LIST));
        table = static_cast<CListCtrl*>(dialog.GetDlgItem(IDC_TABLE));
        tabs = static_cast<CTabCtrl*>(dialog.GetDlgItem(IDC_TABS));
        spinner = static_cast<CSpinButtonCtrl*>(dialog.GetDlgItem(IDC_SPIN));
        ASSERT_TRUE(checks.SubclassDlgItem(IDC_CHECKS, &dialog));
        for (const wchar_t* text : {L"alpha", L"beta", L"Gamma"}) {
            combo->AddString(text);
            list->AddString(text);
            checks.AddString(text);
            table->InsertItem(table->GetItemCount(), text);
            tabs->InsertItem(tabs->GetItemCount(), text);
        }
    }
    Notified dialog;
    CCheckListBox checks;
    CComboBox* combo = nullptr;
    CListBox* list = nullptr;
    CListCtrl* table = nullptr;
    CTabCtrl* tabs = nullptr;
    CSpinButtonCtrl* spinner = nullptr;
};

TEST_F(Notifications, ProgramCallsNotifyNobodyButTextInAnEdit) {
    dialog.take();
    dialog.CheckDlgButton(IDC_USE, 1);
    dialog.CheckRadioButton(IDC_LINEAR, IDC_BOTH, IDC_BOTH);
    combo->SetCurSel(1);
    combo->DeleteString(0);
    list->SetCurSel(2);
    checks.SetCheck(0, 1);
    table->SetItemState(1, LVIS_SELECTED, LVIS_SELECTED);
    tabs->SetCurSel(2);
    spinner->SetRange(1, 1000);
    EXPECT_EQ(dialog.take(), "");
    dialog.SetDlgItemText(IDC_NAME, L"x");
    EXPECT_EQ(dialog.take(), "1001:1024 1001:768");
    spinner->SetPos(5); // writes into its buddy
    EXPECT_EQ(dialog.take(), "1003:1024 1003:768");
}

TEST_F(Notifications, UserActionsNotifyOnceAndOnlyOfChanges) {
    const HWND window = dialog.m_hWnd;
    SetFocus(GetDlgItem(window, IDOK));
    dialog.take();
    EXPECT_TRUE(user::choose(combo->m_hWnd, 2));
    EXPECT_EQ(dialog.take(), "1008:3 1008:1"); // got the focus, changed
    EXPECT_TRUE(user::choose(combo->m_hWnd, 2));
    EXPECT_EQ(dialog.take(), "");
    EXPECT_FALSE(user::choose(combo->m_hWnd, 3));
    pressKey(VK_UP);
    typeCharacter(L'g');
    EXPECT_EQ(dialog.take(), "1008:1 1008:1");
    EXPECT_EQ(windowText(combo->m_hWnd), L"Gamma");

    user::select(list->m_hWnd, {1});
    pressKey(VK_END);
    pressKey(VK_END);
    EXPECT_EQ(dialog.take(), "1008:4 1009:4 1009:1 1009:1");
    EXPECT_FALSE(user::select(list->m_hWnd, {0, 1})); // a list of one

    user::checkItem(checks.m_hWnd, 1, true);
    user::checkItem(checks.m_hWnd, 1, true);
    EXPECT_EQ(dialog.take(), "1009:5 1010:4 1010:40");
    EXPECT_TRUE(checks.GetCheck(1));

    EXPECT_TRUE(user::select(table->m_hWnd, {0, 2}));
    EXPECT_EQ(dialog.take(), "1010:5 1011:-101 1011:-101");
    EXPECT_EQ(table->GetSelectedCount(), 2u);
    user::doubleClickItem(table->m_hWnd, 2);
    EXPECT_EQ(dialog.take(), "1011:-101 1011:-3");

    EXPECT_TRUE(user::type(GetDlgItem(window, IDC_COUNT), L"1a2"));
    EXPECT_EQ(dialog.take(), "1003:256 1003:1024 1003:768 1003:1024 1003:768"); // the letter is no digit
    EXPECT_EQ(windowText(GetDlgItem(window, IDC_COUNT)), L"12");
}

TEST_F(Notifications, RadioButtonsClearTheirGroupBeforeTheyNotify) {
    dialog.CheckRadioButton(IDC_LINEAR, IDC_BOTH, IDC_LINEAR);
    user::press(GetDlgItem(dialog.m_hWnd, IDC_ENVELOPE));
    user::press(GetDlgItem(dialog.m_hWnd, IDC_LINEAR));
    EXPECT_EQ(dialog.checkedWhenNotified, (std::vector<int>{IDC_ENVELOPE, IDC_LINEAR}));
    EXPECT_FALSE(user::press(GetDlgItem(dialog.m_hWnd, IDC_BOTH))); // hidden
    EXPECT_FALSE(dialog.IsDlgButtonChecked(IDC_USE));               // of no group of theirs
}

TEST_F(Notifications, TabsMayRefuse) {
    SetFocus(tabs->m_hWnd);
    dialog.take();
    dialog.answer = 1;
    EXPECT_TRUE(user::select(tabs->m_hWnd, {1}));
    EXPECT_EQ(dialog.take(), "1012:-552");
    EXPECT_EQ(tabs->GetCurSel(), 0);
    dialog.answer = 0;
    pressKey(VK_RIGHT);
    EXPECT_EQ(dialog.take(), "1012:-552 1012:-551");
    EXPECT_EQ(tabs->GetCurSel(), 1);
}

TEST_F(Notifications, SpinButtonsStepWithinTheirRange) {
    spinner->SetRange(1, 3);
    spinner->SetPos(2);
    dialog.take();
    user::spin(spinner->m_hWnd, 1);
    EXPECT_EQ(dialog.take(), "1013:-722 1003:1024 1003:768 scroll4@3 scroll8@3");
    EXPECT_EQ(windowText(GetDlgItem(dialog.m_hWnd, IDC_COUNT)), L"3");
    dialog.SetDlgItemText(IDC_COUNT, L"2");
    const struct {
        const char* name;
        int lower, upper, step, changedTo;
        LRESULT refused;
        int expected;
    } rows[] = {
        {"from the text of the buddy", 1, 3, -1, 0, 0, 1},
        {"stops at the end", 1, 3, -5, 0, 0, 1},
        {"refused", 1, 3, 1, 0, 1, 1},
        {"another step", 1, 100, 1, 10, 0, 11},
        {"down is up", 100, 1, 1, 0, 0, 10},
    };
    for (const auto& row : rows) {
        spinner->SetRange32(row.lower, row.upper);
        dialog.answer = row.refused;
        dialog.delta = row.changedTo;
        user::spin(spinner->m_hWnd, row.step);
        EXPECT_EQ(spinner->GetPos(), row.expected) << row.name;
    }
    dialog.SetDlgItemText(IDC_COUNT, L"99999999999");
    EXPECT_EQ(spinner->GetPos(), 100);
}

TEST_F(Notifications, ArrowsInItsBuddyStepASpinButton) {
    spinner->SetRange(0, 9);
    SetFocus(GetDlgItem(dialog.m_hWnd, IDC_COUNT));
    pressKey(VK_UP);
    pressKey(VK_UP);
    pressKey(VK_DOWN);
    EXPECT_EQ(windowText(GetFocus()), L"1");
    SetFocus(GetDlgItem(dialog.m_hWnd, IDC_FACTOR)); // has none
    pressKey(VK_UP);
    EXPECT_EQ(spinner->GetPos(), 1);
}

TEST_F(Notifications, AnOpenListTakesEnterAndEscapeFirst) {
    dialog.take();
    for (const WPARAM key : {VK_RETURN, VK_ESCAPE}) {
        user::dropDown(combo->m_hWnd, true);
        pressKey(key);
        EXPECT_FALSE(combo->GetDroppedState());
        EXPECT_TRUE(dialog.IsWindowVisible());
    }
    EXPECT_EQ(dialog.take(), "1001:512 1008:3 1008:7 1008:8 1008:7 1008:8");
    user::dropDown(combo->m_hWnd, true);
    pressKey(VK_TAB);
    EXPECT_FALSE(combo->GetDroppedState());
    pressKey(VK_ESCAPE);
    EXPECT_FALSE(dialog.IsWindowVisible());
}

TEST_F(Notifications, EditsByTheirStyle) {
    const struct {
        const char* name;
        UINT style;
        const wchar_t* className;
        const wchar_t* expected;
    } rows[] = {
        {"one line", ES_AUTOHSCROLL, L"Edit", L"acb"},
        {"several lines", ES_MULTILINE | ES_WANTRETURN, L"Edit", L"a\r\ncb"},
        {"read-only", ES_READONLY, L"Edit", L"ab"},
        {"digits", ES_NUMBER, L"Edit", L"ab"},
        {"combo box with an edit", CBS_DROPDOWN, L"ComboBox", L"acb"},
    };
    for (const auto& row : rows) {
        CWnd edit;
        ASSERT_TRUE(
            edit.Create(row.className, nullptr, WS_VISIBLE | row.style, CRect(0, 0, 50, 20), &dialog, 2000));
        edit.SetWindowText(L"ab");
        SetFocus(edit.m_hWnd);
        pressKey(VK_HOME);
        pressKey(VK_RIGHT);
        pressKey(VK_RETURN);
        if (!IsWindowVisible(dialog.m_hWnd)) dialog.ShowWindow(SW_SHOW); // Enter was OK
        typeCharacter(L'c');
        EXPECT_EQ(windowText(edit.m_hWnd), row.expected) << row.name;
        pressKey(VK_LEFT, MK_SHIFT);
        pressKey(VK_BACK);
        pressKey(VK_DELETE);
        if (row.style == ES_AUTOHSCROLL) {
            EXPECT_EQ(windowText(edit.m_hWnd), L"a");
        }
        edit.DestroyWindow();
    }
}

TEST_F(Notifications, BadPositionsAreAnsweredAsErrors) {
    std::wstring text;
    for (const int bad : {-2, -1, 3, 1000000}) {
        EXPECT_EQ(combo->GetLBText(bad, text), CB_ERR);
        EXPECT_EQ(combo->GetItemData(bad), static_cast<DWORD_PTR>(CB_ERR));
        EXPECT_EQ(combo->DeleteString(static_cast<UINT>(bad)), CB_ERR);
        EXPECT_EQ(list->SetItemData(bad, 1), LB_ERR);
        EXPECT_EQ(list->GetText(bad, text), LB_ERR);
        EXPECT_FALSE(table->DeleteItem(bad));
        EXPECT_FALSE(table->SetItemText(bad, 0, L"x"));
        EXPECT_FALSE(table->SetItemText(0, bad, L"x"));
        EXPECT_EQ(table->GetItemText(0, bad), L"");
        EXPECT_FALSE(table->GetCheck(bad));
        EXPECT_EQ(tabs->SetCurSel(bad), -1);
        EXPECT_FALSE(user::select(tabs->m_hWnd, {bad}));
        EXPECT_FALSE(user::checkItem(checks.m_hWnd, bad, true));
    }
    EXPECT_EQ(combo->InsertString(4, L"x"), CB_ERR);
    EXPECT_EQ(combo->SetCurSel(17), CB_ERR);
}

TEST_F(Notifications, SelectionFollowsItsItem) {
    combo->SetCurSel(1);
    combo->InsertString(0, L"first");
    EXPECT_EQ(combo->GetCurSel(), 2);
    combo->DeleteString(0);
    EXPECT_EQ(combo->GetCurSel(), 1);
    combo->DeleteString(1);
    EXPECT_EQ(combo->GetCurSel(), CB_ERR);
    EXPECT_EQ(windowText(combo->m_hWnd), L"");

    table->InsertColumn(0, L"Step", LVCFMT_LEFT, 60);
    table->InsertColumn(1, L"Factor", LVCFMT_RIGHT, 30);
    table->SetItemText(2, 1, L"3");
    user::select(table->m_hWnd, {0, 2});
    std::vector<int> rows;
    for (POSITION at = table->GetFirstSelectedItemPosition(); at;)
        rows.push_back(table->GetNextSelectedItem(at));
    EXPECT_EQ(rows, (std::vector<int>{0, 2}));
    table->DeleteItem(0);
    EXPECT_EQ(table->GetNextItem(-1, LVNI_SELECTED), 1);
    EXPECT_EQ(table->GetItemText(1, 1), L"3");
}

class Placeholder : public CWnd {
  public:
    int painted = 0;
    CPoint pressed;

  protected:
    void OnPaint() {
        if (++painted % 2) Invalidate(); // once more
    }
    void OnLButtonDown(UINT, CPoint point) {
        pressed = point;
        Default();
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Placeholder, CWnd)
ON_WM_PAINT()
ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

class Keyed : public CEdit {
  protected:
    void OnChar(UINT c, UINT, UINT) {
        if (c != L'x') Default();
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Keyed, CEdit)
ON_WM_CHAR()
END_MESSAGE_MAP()

/// Subclassing keeps what the record holds and leaves its class behind Default.
TEST_F(Notifications, SubclassingKeepsTheRecord) {
    Placeholder graph;
    Keyed edit;
    dialog.SetDlgItemText(IDC_NAME, L"kept");
    ASSERT_TRUE(graph.SubclassDlgItem(IDC_PLACE, &dialog));
    ASSERT_TRUE(edit.SubclassDlgItem(IDC_NAME, &dialog));
    EXPECT_EQ(dialog.GetDlgItem(IDC_PLACE), &graph);
    CWnd second;
    EXPECT_FALSE(second.SubclassDlgItem(IDC_PLACE, &dialog)); // has an object
    EXPECT_FALSE(graph.SubclassDlgItem(IDC_FACTOR, &dialog)); // the object has a window
    EXPECT_FALSE(second.SubclassDlgItem(4711, &dialog));
    EXPECT_FALSE(second.Attach(graph.m_hWnd));
    EXPECT_EQ(windowText(edit.m_hWnd), L"kept");
    SetFocus(edit.m_hWnd);
    edit.SetSel(-1, 0);
    pressKey(VK_END);
    for (const wchar_t c : {L'x', L'y'})
        typeCharacter(c);
    EXPECT_EQ(windowText(edit.m_hWnd), L"kepty");

    EXPECT_TRUE(paintsItself(graph.m_hWnd));
    EXPECT_FALSE(paintsItself(edit.m_hWnd));
    graph.painted = 0;
    graph.Invalidate();
    graph.Invalidate();
    pumpMessages();
    EXPECT_EQ(graph.painted, 1);
    pumpMessages();
    pumpMessages();
    EXPECT_EQ(graph.painted, 2);
    EXPECT_TRUE(user::mouse(graph.m_hWnd, WM_LBUTTONDOWN, CPoint(-3, 7)));
    EXPECT_EQ(graph.pressed, CPoint(-3, 7));
    edit.UnsubclassWindow();
    typeCharacter(L'x');
    EXPECT_EQ(windowText(GetDlgItem(dialog.m_hWnd, IDC_NAME)), L"keptyx");
}

} // namespace
