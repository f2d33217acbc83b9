#include "framework/windows/dialogs/Navigation.h"

#include "framework/windows/dialogs/Dialog.h"
#include "tests/framework/windows/WindowTest.h"

namespace {

using namespace framework;

/// Notes the commands that reach it.
class Pressed : public CDialog {
  public:
    std::vector<int> commands;

  protected:
    int OnCommand(WPARAM wParam, LPARAM lParam) override {
        const auto command = static_cast<LPARAM>(wParam);
        if (HIWORD(command) == BN_CLICKED) commands.push_back(static_cast<int>(LOWORD(command)));
        return CDialog::OnCommand(wParam, lParam);
    }
    void OnOK() override {}
    void OnCancel() override {}
};

class Navigation : public WindowTest {
  protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        dialog.ShowWindow(SW_SHOW);
    }
    int focusId() const { return GetDlgCtrlID(GetFocus()); }
    HWND item(int id) const { return GetDlgItem(dialog.m_hWnd, id); }
    Pressed dialog;
};

TEST_F(Navigation, TabGoesRoundInTheOrderOfTheTemplate) {
    const int order[] = {IDC_NAME, IDC_FACTOR, IDC_COUNT,  IDC_USE,   IDC_LINEAR,
                         IDC_KIND, IDC_LIST,   IDC_CHECKS, IDC_TABLE, IDC_TABS,
                         IDC_ADD,  IDC_APPLY,  IDOK,       IDCANCEL,  IDC_NAME};
    EXPECT_EQ(focusId(), IDC_NAME);
    for (std::size_t i = 1; i < std::size(order); ++i) {
        pressKey(VK_TAB);
        EXPECT_EQ(focusId(), order[i]) << i;
    }
    for (std::size_t i = std::size(order) - 1; i-- > 0;) {
        pressKey(VK_TAB, MK_SHIFT);
        EXPECT_EQ(focusId(), order[i]) << i;
    }
}

TEST_F(Navigation, TabPassesWhatCannotBeUsedAndStopsAtTheCheckedRadio) {
    dialog.CheckRadioButton(IDC_LINEAR, IDC_ENVELOPE, IDC_ENVELOPE);
    EnableWindow(item(IDC_KIND), 0);
    ShowWindow(item(IDC_LIST), SW_HIDE);
    SetFocus(item(IDC_USE));
    pressKey(VK_TAB);
    EXPECT_EQ(focusId(), IDC_ENVELOPE);
    pressKey(VK_TAB);
    EXPECT_EQ(focusId(), IDC_CHECKS);
    pressKey(VK_TAB, MK_SHIFT);
    EXPECT_EQ(focusId(), IDC_ENVELOPE);
}

TEST_F(Navigation, ArrowsCheckTheNextRadioOfTheGroup) {
    SetFocus(item(IDC_LINEAR));
    pressKey(VK_RIGHT);
    EXPECT_EQ(focusId(), IDC_ENVELOPE);
    EXPECT_EQ(dialog.GetCheckedRadioButton(IDC_LINEAR, IDC_BOTH), IDC_ENVELOPE);
    pressKey(VK_DOWN); // the third one is hidden
    EXPECT_EQ(dialog.GetCheckedRadioButton(IDC_LINEAR, IDC_BOTH), IDC_LINEAR);
    pressKey(VK_UP);
    EXPECT_EQ(dialog.GetCheckedRadioButton(IDC_LINEAR, IDC_BOTH), IDC_ENVELOPE);
    EXPECT_EQ(dialog.commands, (std::vector<int>{IDC_ENVELOPE, IDC_LINEAR, IDC_ENVELOPE}));
}

TEST_F(Navigation, KeysPressButtons) {
    const struct {
        const char* name;
        int focus;
        void (*act)();
        std::vector<int> expected;
        int focusAfter;
    } rows[] = {
        {"Enter in an edit: the default button", IDC_NAME, [] { pressKey(VK_RETURN); }, {IDOK}, IDC_NAME},
        {"Enter on a push button", IDC_ADD, [] { pressKey(VK_RETURN); }, {IDC_ADD}, IDC_ADD},
        {"Enter on a check box", IDC_USE, [] { pressKey(VK_RETURN); }, {IDOK}, IDC_USE},
        {"Escape", IDC_LIST, [] { pressKey(VK_ESCAPE); }, {IDCANCEL}, IDC_LIST},
        {"space", IDC_ADD, [] { pressKey(VK_SPACE); }, {IDC_ADD}, IDC_ADD},
        {"mnemonic of a button", IDC_NAME, [] { pressMnemonic(L'a'); }, {IDC_ADD}, IDC_ADD},
        {"in upper case", IDC_NAME, [] { pressMnemonic(L'P'); }, {IDC_APPLY}, IDC_APPLY},
        {"mnemonic of a label", IDOK, [] { pressMnemonic(L'k'); }, {}, IDC_KIND},
        {"mnemonic of a radio button", IDOK, [] { pressMnemonic(L'v'); }, {IDC_ENVELOPE}, IDC_ENVELOPE},
        {"without Alt on a button", IDOK, [] { typeCharacter(L'u'); }, {IDC_USE}, IDC_USE},
        {"without Alt in an edit: text", IDC_NAME, [] { typeCharacter(L'u'); }, {}, IDC_NAME},
        {"of nothing", IDC_NAME, [] { pressMnemonic(L'z'); }, {}, IDC_NAME},
    };
    for (const auto& row : rows) {
        SetFocus(item(row.focus));
        dialog.commands.clear();
        row.act();
        EXPECT_EQ(dialog.commands, row.expected) << row.name;
        EXPECT_EQ(focusId(), row.focusAfter) << row.name;
    }
    EXPECT_EQ(windowText(item(IDC_NAME)), L"u");
}

TEST_F(Navigation, DisabledButtonsAreNotPressed) {
    for (const int id : {IDOK, IDCANCEL, IDC_ADD})
        EnableWindow(item(id), 0);
    SetFocus(item(IDC_NAME));
    pressKey(VK_RETURN);
    pressKey(VK_ESCAPE);
    pressMnemonic(L'a');
    EXPECT_FALSE(user::press(item(IDC_ADD)));
    EXPECT_TRUE(user::close(dialog.m_hWnd));
    EXPECT_TRUE(dialog.commands.empty());
}

TEST_F(Navigation, EditsReachedByTabAreTypedOver) {
    dialog.SetDlgItemText(IDC_FACTOR, L"1.0");
    SetFocus(item(IDC_NAME));
    pressKey(VK_TAB);
    typeCharacter(L'2');
    EXPECT_EQ(windowText(item(IDC_FACTOR)), L"2");
}

TEST_F(Navigation, TheFocusLeavesWhatIsDisabledOrHidden) {
    SetFocus(item(IDC_FACTOR));
    EnableWindow(item(IDC_FACTOR), 0);
    EXPECT_EQ(focusId(), IDC_COUNT);
    ShowWindow(item(IDC_COUNT), SW_HIDE);
    EXPECT_EQ(focusId(), IDC_USE);
    DestroyWindow(item(IDC_USE));
    EXPECT_EQ(focusId(), IDC_LINEAR);
    EXPECT_EQ(SetFocus(item(IDC_FACTOR)), nullptr);
    EXPECT_EQ(focusId(), IDC_LINEAR);
}

TEST_F(Navigation, ActivationKeepsEachDialogsFocus) {
    SetFocus(item(IDC_KIND));
    Pressed second;
    ASSERT_TRUE(second.Create(IDD_HOST));
    second.ShowWindow(SW_SHOW);
    EXPECT_EQ(GetActiveWindow(), second.m_hWnd);
    EXPECT_EQ(GetFocus(), GetDlgItem(second.m_hWnd, IDC_ADD));
    dialog.SetActiveWindow();
    EXPECT_EQ(focusId(), IDC_KIND);
    EXPECT_EQ(topLevelWindows().back(), dialog.m_hWnd);
    EnableWindow(dialog.m_hWnd, 0);
    second.SetActiveWindow();
    EXPECT_EQ(SetActiveWindow(dialog.m_hWnd), nullptr);
    EXPECT_EQ(GetActiveWindow(), second.m_hWnd);
}

/// A page in a dialog: keys go through both, commands to the page alone.
TEST_F(Navigation, PagesAreNavigatedByTheDialogTheyLieIn) {
    class Host : public Pressed {
      public:
        int seen = 0;
        bool swallow = false;
        int PreTranslateMessage(MSG* message) override {
            ++seen;
            return swallow || Pressed::PreTranslateMessage(message);
        }
    } host;
    Pressed page;
    ASSERT_TRUE(host.Create(IDD_HOST));
    ASSERT_TRUE(page.Create(IDD_PAGE, &host));
    page.ShowWindow(SW_SHOW);
    host.ShowWindow(SW_SHOW);
    SetFocus(GetDlgItem(page.m_hWnd, IDC_PAGE_EDIT));
    host.seen = 0;
    pressKey(VK_RETURN);
    EXPECT_EQ(host.commands, std::vector<int>{IDOK});
    EXPECT_TRUE(page.commands.empty());
    EXPECT_EQ(host.seen, 1);
    pressKey(VK_TAB);
    EXPECT_EQ(focusId(), IDC_PAGE_BUTTON);
    pressKey(VK_SPACE);
    EXPECT_EQ(page.commands, std::vector<int>{IDC_PAGE_BUTTON});
    pressKey(VK_TAB);
    EXPECT_EQ(GetFocus(), GetDlgItem(host.m_hWnd, IDC_ADD));
    pressKey(VK_TAB, MK_SHIFT);
    EXPECT_EQ(focusId(), IDC_PAGE_BUTTON);
    host.swallow = true;
    pressKey(VK_TAB);
    EXPECT_EQ(focusId(), IDC_PAGE_BUTTON);
}

TEST(Mnemonics, AreLettersBehindASingleMark) {
    const struct {
        const wchar_t* text;
        wchar_t letter;
        const wchar_t* shown;
    } rows[] = {{L"&Add", L'a', L"Add"}, {L"R&&D &x", L'x', L"R&D x"}, {L"R&&D", 0, L"R&D"},
                {L"", 0, L""},           {L"end&", 0, L"end"},         {L"추가(&A)", L'a', L"추가(A)"},
                {L"&&&b", L'b', L"&b"}};
    for (const auto& row : rows) {
        EXPECT_EQ(mnemonicOf(row.text), row.letter) << testing::PrintToString(row.text);
        EXPECT_EQ(withoutMnemonic(row.text), row.shown);
    }
}

} // namespace
