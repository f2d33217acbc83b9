#include "framework/windows/dialogs/Dialog.h"

#include "framework/windows/WinThread.h"
#include "framework/windows/dialogs/DataExchange.h"
#include "tests/framework/windows/WindowTest.h"

#include <functional>

namespace {

using namespace framework;

/// The values of IDD_CONTROLS.
struct Values {
    std::wstring name;
    double factor = 1;
    int count = 0;
    int use = 0;
    int type = -1;
    int kind = -1;
    int item = -1;
};

class ValueDialog : public CDialog {
  public:
    ValueDialog()
        : CDialog(IDD_CONTROLS) {}
    Values values;
    CComboBox kind;
    CListBox list;
    int changes = 0;
    std::function<void()> atInit;
    int boundId = IDC_KIND;

    int OnInitDialog() override {
        CDialog::OnInitDialog();
        for (const wchar_t* text : {L"a", L"b", L"c"}) {
            kind.AddString(text);
            list.AddString(text);
        }
        if (atInit) atInit();
        return 1;
    }

  protected:
    void DoDataExchange(CDataExchange* exchange) override {
        DDX_Control(exchange, boundId, kind);
        DDX_Control(exchange, IDC_LIST, list);
        DDX_Text(exchange, IDC_NAME, values.name);
        DDV_MaxChars(exchange, values.name, 5);
        DDX_Text(exchange, IDC_FACTOR, values.factor);
        DDV_MinMaxDouble(exchange, values.factor, -1e6, 1e6);
        DDX_Text(exchange, IDC_COUNT, values.count);
        DDX_Check(exchange, IDC_USE, values.use);
        DDX_Radio(exchange, IDC_LINEAR, values.type);
        DDX_CBIndex(exchange, IDC_KIND, values.kind);
        DDX_LBIndex(exchange, IDC_LIST, values.item);
    }
    void OnChange() { ++changes; }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(ValueDialog, CDialog)
ON_EN_CHANGE(IDC_NAME, &ValueDialog::OnChange)
ON_EN_CHANGE(IDC_FACTOR, &ValueDialog::OnChange)
END_MESSAGE_MAP()

class DataExchange : public WindowTest {
  protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        dialog.ShowWindow(SW_SHOW);
    }
    ValueDialog dialog;
};

TEST_F(DataExchange, GoesThereAndBack) {
    dialog.values = {L"dam", 0.1, -7, 1, 1, 2, 0};
    dialog.changes = 0;
    EXPECT_TRUE(dialog.UpdateData(0));
    EXPECT_EQ(dialog.changes, 0); // notifications are dropped meanwhile
    EXPECT_EQ(windowText(GetDlgItem(dialog.m_hWnd, IDC_FACTOR)), L"0.1");
    EXPECT_EQ(dialog.GetCheckedRadioButton(IDC_LINEAR, IDC_BOTH), IDC_ENVELOPE);
    dialog.values = {};
    EXPECT_TRUE(dialog.UpdateData(1));
    const Values& read = dialog.values;
    EXPECT_EQ(read.name, L"dam");
    EXPECT_EQ(read.factor, 0.1);
    EXPECT_EQ((std::vector<int>{read.count, read.use, read.type, read.kind, read.item}),
              (std::vector<int>{-7, 1, 1, 2, 0}));
    user::type(GetDlgItem(dialog.m_hWnd, IDC_NAME), L"reservoir");
    EXPECT_EQ(windowText(GetDlgItem(dialog.m_hWnd, IDC_NAME)), L"reser");
    EXPECT_EQ(dialog.changes, 5);
}

TEST_F(DataExchange, RefusedInputTellsTheUserAndGoesToTheControl) {
    const struct {
        int id;
        const wchar_t* text;
        const wchar_t* message; ///< null: accepted
    } rows[] = {
        {IDC_FACTOR, L"2.5", nullptr},
        {IDC_FACTOR, L" +1e3 ", nullptr},
        {IDC_FACTOR, L"2.5x", L"Please enter a number."},
        {IDC_FACTOR, L"", L"Please enter a number."},
        {IDC_FACTOR, L"1,5", L"Please enter a number."},
        {IDC_FACTOR, L"nan", L"Please enter a number."},
        {IDC_FACTOR, L"1e999", L"Please enter a number."},
        {IDC_FACTOR, L"+-1", L"Please enter a number."},
        {IDC_FACTOR, L"1000001", L"Please enter a number between -1e+06 and 1e+06."},
        {IDC_COUNT, L"12", nullptr},
        {IDC_COUNT, L"1.5", L"Please enter an integer."},
        {IDC_COUNT, L"99999999999", L"Please enter an integer."},
        {IDC_COUNT, L"１２", L"Please enter an integer."},
        {IDC_NAME, L"123456", L"Please enter at most 5 characters."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        dialog.values = {};
        dialog.UpdateData(0);
        SetFocus(GetDlgItem(dialog.m_hWnd, IDOK));
        scriptedDesk().clear();
        dialog.SetDlgItemText(row.id, row.text);
        EXPECT_EQ(dialog.UpdateData(1), row.message == nullptr);
        if (!row.message) continue;
        ASSERT_EQ(scriptedDesk().messages().size(), 1u);
        EXPECT_EQ(scriptedDesk().messages()[0].text, row.message);
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog.m_hWnd, row.id));
        typeCharacter(L'4'); // over what is selected
        EXPECT_EQ(windowText(GetFocus()), L"4");
    }
    EXPECT_TRUE(errors.empty());
}

TEST_F(DataExchange, AControlThatCannotBeBoundFails) {
    ValueDialog missing;
    missing.boundId = 4711;
    EXPECT_FALSE(missing.Create(IDD_CONTROLS));
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_NE(errors[0].find(L"4711"), std::wstring::npos);
    ValueDialog twice;
    twice.boundId = IDC_LIST;
    EXPECT_FALSE(twice.Create(IDD_CONTROLS));
    EXPECT_EQ(errors.size(), 2u);
    EXPECT_EQ(twice.DoModal(), -1);
}

class Modal : public WindowTest {
  protected:
    void SetUp() override {
        ASSERT_TRUE(
            main.CreateEx(0, L"#32770", L"Main", WS_CAPTION | WS_VISIBLE, CRect(0, 0, 800, 600), nullptr, 0));
        thread.m_pMainWnd = &main;
    }
    CWinThread thread;
    CWnd main;
    ScriptedDesk& desk = scriptedDesk();
};

TEST_F(Modal, DisablesTheMainWindowUntilItsAnswer) {
    ValueDialog dialog;
    CDialog owner;
    ASSERT_TRUE(owner.Create(IDD_HOST));
    owner.ShowWindow(SW_SHOW);
    ValueDialog owned;
    bool disabled = false;
    desk.addStep([&] {
        disabled = !main.IsWindowEnabled() && owner.IsWindowEnabled() && GetActiveWindow() == dialog.m_hWnd;
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog.m_hWnd, IDC_NAME));
        EXPECT_EQ(GetParent(dialog.m_hWnd), main.m_hWnd);
        user::type(GetFocus(), L"set");
        pressKey(VK_RETURN);
    });
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_TRUE(disabled && main.IsWindowEnabled());
    EXPECT_EQ(dialog.values.name, L"set");
    EXPECT_EQ(GetActiveWindow(), main.m_hWnd);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(Modal, Answers) {
    const struct {
        const char* name;
        void (*script)(ValueDialog&, ScriptedDesk&);
        INT_PTR expected;
    } rows[] = {
        {"OK",
         [](ValueDialog& d, ScriptedDesk& steps) {
             steps.addStep([&d] { user::press(GetDlgItem(d.m_hWnd, IDOK)); });
         },
         IDOK},
        {"nobody answers", [](ValueDialog&, ScriptedDesk&) {}, IDCANCEL},
        {"nobody answers, and it cannot be cancelled",
         [](ValueDialog& d, ScriptedDesk& steps) {
             steps.addStep([&d] { EnableWindow(GetDlgItem(d.m_hWnd, IDCANCEL), 0); });
         },
         IDCANCEL},
        {"ended before it is shown",
         [](ValueDialog& d, ScriptedDesk&) { d.atInit = [&d] { d.EndDialog(77); }; }, 77},
        {"destroyed while it runs",
         [](ValueDialog& d, ScriptedDesk& steps) { steps.addStep([&d] { d.DestroyWindow(); }); }, -1},
        {"destroyed as it begins",
         [](ValueDialog& d, ScriptedDesk&) { d.atInit = [&d] { d.DestroyWindow(); }; }, -1},
        {"fails as it begins",
         [](ValueDialog& d, ScriptedDesk&) { d.atInit = [] { throw std::runtime_error("no"); }; }, -1},
        {"a step that throws",
         [](ValueDialog& d, ScriptedDesk& steps) {
             steps.addStep([] { throw 1; });
             steps.addStep([&d] { d.PostMessage(WM_COMMAND, static_cast<WPARAM>(IDOK)); });
         },
         IDOK},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        desk.clear();
        ValueDialog dialog;
        row.script(dialog, desk);
        EXPECT_EQ(dialog.DoModal(), row.expected);
        EXPECT_TRUE(main.IsWindowEnabled());
        EXPECT_EQ(topLevelWindows(), std::vector<HWND>{main.m_hWnd});
        EXPECT_EQ(GetActiveWindow(), main.m_hWnd);
    }
}

TEST_F(Modal, DialogsNest) {
    ValueDialog outer, inner;
    std::vector<INT_PTR> answers;
    desk.addStep([&] {
        ValueDialog child;
        answers.push_back(inner.DoModal());
        EXPECT_FALSE(main.IsWindowEnabled());
        EXPECT_EQ(GetActiveWindow(), outer.m_hWnd);
    });
    desk.addStep([&] { pressKey(VK_ESCAPE); });
    desk.addStep([&] { pressKey(VK_RETURN); });
    outer.atInit = [&] { EXPECT_FALSE(main.IsWindowEnabled()); };
    EXPECT_EQ(outer.DoModal(), IDOK);
    EXPECT_EQ(answers, std::vector<INT_PTR>{IDCANCEL});
}

TEST_F(Modal, TheMainWindowMayGoMeanwhile) {
    ValueDialog dialog;
    desk.addStep([&] { main.DestroyWindow(); });
    EXPECT_EQ(dialog.DoModal(), -1);
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
}

TEST_F(Modal, DialogsStandInTheClientAreaOfTheirOwner) {
    CDialog dialog;
    main.MoveWindow(100, 50, 400, 300);
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    CRect rect, client;
    dialog.GetWindowRect(&rect);
    dialog.GetClientRect(&client);
    // 10, 20, 240, 200 units of 6/4 and 13/8 pixels; borders of 2.
    EXPECT_EQ(rect, CRect(CPoint(100 + 2 + 15, 50 + 2 + 33), CSize(360 + 4, 325 + 4)));
    EXPECT_EQ(client, CRect(0, 0, 360, 325));
    CRect edit;
    dialog.GetDlgItem(IDC_NAME)->GetWindowRect(&edit); // 50, 7, 80, 14
    dialog.ScreenToClient(&edit);
    EXPECT_EQ(edit, CRect(75, 11, 195, 34));
    dialog.GetDlgItem(IDC_NAME)->GetClientRect(&client);
    EXPECT_EQ(client, CRect(0, 0, 116, 19)); // an edit has a border
    dialog.CenterWindow();
    dialog.GetWindowRect(&rect);
    EXPECT_EQ(rect.TopLeft(), CPoint(100 + (400 - 364) / 2, 50 + (300 - 329) / 2));
}

/// Sizes, posted and registered messages.
class Messages : public CDialog {
  public:
    std::vector<std::string> log;
    static UINT registered;
    bool endless = false;

  protected:
    void OnSize(UINT, int width, int height) {
        log.push_back("size " + std::to_string(width) + "x" + std::to_string(height));
    }
    LRESULT OnUser(WPARAM w, LPARAM l) {
        log.push_back("user " + std::to_string(w) + " " + std::to_string(l));
        if (w == 1) PostMessage(WM_USER + 7, endless ? 1 : 2, -5);
        return 42;
    }
    LRESULT OnRegistered(WPARAM, LPARAM) { return 43; }
    DECLARE_MESSAGE_MAP()
};
UINT Messages::registered = RegisterWindowMessage(L"_test_message");
BEGIN_MESSAGE_MAP(Messages, CDialog)
ON_WM_SIZE()
ON_MESSAGE(WM_USER + 7, &Messages::OnUser)
ON_REGISTERED_MESSAGE(registered, &Messages::OnRegistered)
END_MESSAGE_MAP()

TEST_F(Modal, MessagesAreSentPostedAndRegistered) {
    Messages dialog;
    ASSERT_TRUE(dialog.Create(IDD_EMPTY));
    EXPECT_EQ(RegisterWindowMessage(L"_test_message"), Messages::registered);
    EXPECT_NE(RegisterWindowMessage(L"_other_message"), Messages::registered);
    EXPECT_EQ(dialog.SendMessage(Messages::registered), 43);
    dialog.PostMessage(WM_USER + 7, 1, 0);
    EXPECT_TRUE(dialog.log.empty());
    pumpMessages();
    dialog.MoveWindow(0, 0, 30, 40);
    dialog.MoveWindow(5, 5, 30, 40); // moved, of the same size
    EXPECT_EQ(joined(dialog.log), "user 1 0 user 2 -5 size 30x40");
    EXPECT_EQ(dialog.SendMessage(WM_USER + 7), 42);
    dialog.endless = true;
    dialog.PostMessage(WM_USER + 7, 1, 0);
    pumpMessages(); // comes back
    EXPECT_GT(dialog.log.size(), 1000u);
}

} // namespace
