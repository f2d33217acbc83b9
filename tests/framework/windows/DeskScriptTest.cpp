#include "framework/windows/dialogs/Dialog.h"
#include "tests/framework/windows/WindowTest.h"

namespace {

using namespace framework;

class Scripted : public CDialog {
  public:
    Scripted()
        : CDialog(IDD_CONTROLS) {}
    CCheckListBox checks;
    std::vector<int> asked;

    int OnInitDialog() override {
        CDialog::OnInitDialog();
        checks.SubclassDlgItem(IDC_CHECKS, this);
        auto* combo = static_cast<CComboBox*>(GetDlgItem(IDC_KIND));
        auto* table = static_cast<CListCtrl*>(GetDlgItem(IDC_TABLE));
        auto* tabs = static_cast<CTabCtrl*>(GetDlgItem(IDC_TABS));
        for (const wchar_t* text : {L"Maximum", L"Minimum", L"절대 \"최대\""}) {
            combo->AddString(text);
            checks.AddString(text);
            table->InsertItem(9, text);
            tabs->InsertItem(9, text);
        }
        return 1;
    }

  protected:
    void OnAdd() { asked.push_back(MessageBox(L"Sure?", L"Test", MB_YESNOCANCEL | MB_DEFBUTTON2)); }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Scripted, CDialog)
ON_BN_CLICKED(IDC_ADD, &Scripted::OnAdd)
END_MESSAGE_MAP()

class Desk : public WindowTest {
  protected:
    ScriptedDesk& desk = scriptedDesk();
};

TEST_F(Desk, AScriptWorksADialog) {
    desk.addScript(L"# names are ids, texts of buttons, or labels\n"
                   L"type \"Name\" \"a \"\"new\"\" set\"   # a comment\n"
                   L"type 1002 2.5\r\n"
                   L"choose Kind \"절대 \"\"최대\"\"\"\n"
                   L"check \"Use it\"\n"
                   L"press Envelope\n"
                   L"spin 1013 3\n"
                   L"check 1010 Minimum\n"
                   L"check 1010 #0\n"
                   L"check 1010 #0 off\n"
                   L"select 1011 Maximum #2\n"
                   L"select 1012 Minimum\n"
                   L"press Add\n"
                   L"answer Yes\n"
                   L"key Alt+A\n"
                   L"key Shift+Tab\n"
                   L"\n"
                   L"press OK\n");
    class Closing : public Scripted {
      public:
        std::vector<std::wstring> texts;
        std::vector<int> states;
        std::vector<std::wstring> problems;
        void OnOK() override {
            for (const int id : {IDC_NAME, IDC_FACTOR, IDC_KIND, IDC_COUNT})
                texts.push_back(windowText(::GetDlgItem(m_hWnd, id)));
            auto* table = static_cast<CListCtrl*>(GetDlgItem(IDC_TABLE));
            auto* tabs = static_cast<CTabCtrl*>(GetDlgItem(IDC_TABS));
            states = {static_cast<int>(IsDlgButtonChecked(IDC_USE)),
                      GetCheckedRadioButton(IDC_LINEAR, IDC_BOTH),
                      checks.GetCheck(0),
                      checks.GetCheck(1),
                      static_cast<int>(table->GetItemState(0, LVIS_SELECTED)),
                      static_cast<int>(table->GetItemState(1, LVIS_SELECTED)),
                      static_cast<int>(table->GetItemState(2, LVIS_SELECTED)),
                      tabs->GetCurSel()};
            problems = scriptedDesk().problems();
            scriptedDesk().clear();
            EndDialog(IDOK);
        }
    } closing;
    EXPECT_EQ(closing.DoModal(), IDOK);
    EXPECT_EQ(closing.problems, std::vector<std::wstring>{});
    EXPECT_EQ(closing.texts, (std::vector<std::wstring>{L"a \"new\" set", L"2.5", L"절대 \"최대\"", L"3"}));
    EXPECT_EQ(closing.states, (std::vector<int>{1, IDC_ENVELOPE, 0, 1, 2, 0, 2, 1}));
    EXPECT_EQ(closing.asked, (std::vector<int>{IDYES, IDNO})); // the second took its default
}

TEST_F(Desk, WhatIsNotPossibleIsAProblemWithItsLine) {
    const struct {
        const wchar_t* script;
        const wchar_t* problem;
    } rows[] = {
        {L"press \"Add", L"line 1: a text in quotes has no end"},
        {L"\n\npush Add", L"line 3: there is no action \"push\""},
        {L"press", L"line 1: \"press\" takes another number of arguments"},
        {L"press a b", L"line 1: \"press\" takes another number of arguments"},
        {L"answer maybe", L"line 1: there is no answer \"maybe\""},
        {L"answer ok", L"line 1: no message was shown to answer"},
        {L"press Nothing", L"line 1: there is no control \"Nothing\" here"},
        {L"press 4711", L"line 1: there is no control \"4711\" here"},
        {L"press Kind", L"line 1: \"press\" is not possible with \"Kind\" now"},
        {L"press Both", L"line 1: \"press\" is not possible with \"Both\" now"},
        {L"choose Kind Average", L"line 1: \"choose\" is not possible with \"Kind\" now"},
        {L"choose Kind #3", L"line 1: \"choose\" is not possible with \"Kind\" now"},
        {L"choose Kind #-1", L"line 1: \"choose\" is not possible with \"Kind\" now"},
        {L"check Linear off", L"line 1: \"check\" is not possible with \"Linear\" now"},
        {L"spin 1013 many", L"line 1: \"spin\" is not possible with \"1013\" now"},
        {L"key F13", L"line 1: there is no key \"F13\" here"},
        {L"window Elsewhere", L"line 1: there is no window \"Elsewhere\" here"},
    };
    for (const auto& row : rows) {
        desk.clear();
        desk.addScript(row.script);
        Scripted dialog;
        dialog.DoModal();
        ASSERT_EQ(desk.problems().size(), 1u) << testing::PrintToString(row.script);
        EXPECT_TRUE(desk.problems()[0].starts_with(row.problem))
            << testing::PrintToString(desk.problems()[0]);
    }
}

TEST_F(Desk, ModelessDialogsAreWorkedByRun) {
    Scripted first;
    CDialog second;
    ASSERT_TRUE(first.Create(IDD_CONTROLS) && second.Create(IDD_HOST));
    first.ShowWindow(SW_SHOW);
    second.ShowWindow(SW_SHOW);
    desk.addScript(
        L"window \"Controls \"\"for\"\" tests\"\ntype 1001 x\nwindow \"결과 조합\"\nclose\nclose\nclose");
    desk.run();
    EXPECT_EQ(windowText(GetDlgItem(first.m_hWnd, IDC_NAME)), L"x");
    EXPECT_FALSE(first.IsWindowVisible() || second.IsWindowVisible());
    EXPECT_EQ(desk.problems(), std::vector<std::wstring>{L"line 6: there is no window to close"});
}

TEST_F(Desk, MessageBoxesTakeTheirDefault) {
    const struct {
        unsigned style;
        int expected;
    } rows[] = {{MB_OK, IDOK},
                {MB_OKCANCEL | MB_DEFBUTTON2, IDCANCEL},
                {MB_YESNO, IDYES},
                {MB_YESNOCANCEL | MB_DEFBUTTON3 | MB_ICONQUESTION, IDCANCEL},
                {MB_YESNO | MB_DEFBUTTON3, IDNO},
                {MB_ABORTRETRYIGNORE | MB_DEFBUTTON2, IDRETRY},
                {MB_RETRYCANCEL, IDRETRY}};
    for (const auto& row : rows)
        EXPECT_EQ(desktop().ShowMessageBox(nullptr, L"?", L"", row.style), row.expected) << row.style;
    desk.addAnswer(IDYES);
    EXPECT_EQ(desktop().ShowMessageBox(nullptr, L"?", L"", MB_OK), IDOK); // has no such button
    EXPECT_EQ(desk.problems().size(), 1u);
}

/// A screen of its own: told of every window, and runs the loops.
TEST_F(Desk, AnotherDesktopIsToldOfWindows) {
    class Screen : public DesktopPort {
      public:
        int created = 0, destroyed = 0, loops = 0;
        unsigned changed = 0;
        void WindowCreated(HWND window) override { created += findWindow(window) != nullptr; }
        void WindowDestroyed(HWND window) override { destroyed += findWindow(window) != nullptr; }
        void WindowChanged(HWND, unsigned what) override { changed |= what; }
        void RunModalLoop(HWND dialog) override {
            ++loops;
            user::press(GetDlgItem(dialog, IDOK));
        }
        int ShowMessageBox(HWND, const std::wstring&, const std::wstring&, unsigned) override { return IDNO; }
    } screen;
    EXPECT_EQ(setDesktop(&screen), nullptr);
    Scripted dialog;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(setDesktop(nullptr), &screen);
    EXPECT_EQ(screen.loops, 1);
    EXPECT_EQ(screen.created, 1 + static_cast<int>(findTemplate(IDD_CONTROLS)->controls.size()));
    EXPECT_EQ(screen.destroyed, screen.created);
    EXPECT_EQ(screen.changed & (change::kState | change::kContent | change::kFocus),
              change::kState | change::kContent | change::kFocus);
}

} // namespace
