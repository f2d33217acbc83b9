#include "framework/windows/dialogs/DataExchange.h"
#include "framework/windows/dialogs/Dialog.h"
#include "tests/framework/windows/WindowTest.h"

#include <array>

namespace {

/// Writes down what happens to it, in order, and does something at one of the events.
class Recorder : public CDialog {
  public:
    using CDialog::CDialog;
    explicit Recorder(std::vector<std::string>& log, std::string trouble = {}, std::string at = {})
        : log_(log)
        , trouble_(std::move(trouble))
        , at_(std::move(at)) {}
    ~Recorder() override { log_.push_back("deleted"); }

    int OnInitDialog() override {
        CDialog::OnInitDialog();
        event("init");
        return 1;
    }
    using CDialog::OnWndMsg;

  protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_CREATE) event("create");
        if (message == WM_DESTROY) event("destroy");
        if (message == WM_NCDESTROY) event("last");
        if (message == WM_SHOWWINDOW) event("show");
        if (refuse_ && message == WM_CREATE) return -1;
        return CDialog::WindowProc(message, wParam, lParam);
    }
    void PreSubclassWindow() override { event("attach"); }
    void DoDataExchange(CDataExchange*) override { event("exchange"); }
    void PostNcDestroy() override {
        log_.push_back("post");
        delete this;
    }

  private:
    void event(const std::string& name) {
        log_.push_back(name);
        if (name != at_) return;
        if (trouble_ == "throw") throw std::runtime_error("no luck");
        if (trouble_ == "throw a number") throw 7;
        if (trouble_ == "destroy") DestroyWindow();
        if (trouble_ == "refuse") refuse_ = true;
    }
    std::vector<std::string>& log_;
    std::string trouble_;
    std::string at_;
    bool refuse_ = false;
};

class Lifetime : public WindowTest {};

TEST_F(Lifetime, OrderOfAModelessDialog) {
    std::vector<std::string> log;
    auto* dialog = new Recorder(log);
    ASSERT_TRUE(dialog->Create(IDD_CONTROLS));
    const HWND window = dialog->m_hWnd;
    const HWND child = GetDlgItem(window, IDC_NAME);
    EXPECT_TRUE(dialog->ShowWindow(SW_SHOW) == 0 && IsWindowVisible(child));
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_EQ(joined(log), "attach create exchange init show destroy last post deleted");
    EXPECT_FALSE(IsWindow(window) || IsWindow(child));
    EXPECT_FALSE(DestroyWindow(window));
    EXPECT_EQ(GetActiveWindow(), nullptr);
}

TEST_F(Lifetime, FailedCreationHasNoPostDestroyAndIsDeletedOnce) {
    const struct {
        const char* trouble;
        const char* at;
        UINT id;
        bool reported;
    } rows[] = {
        {"", "", 4711, false}, // no such template
        {"", "", IDD_UNKNOWN_CLASS, false},
        {"", "", IDD_PAGE, false}, // a child without a parent
        {"throw", "attach", IDD_CONTROLS, true},
        {"throw", "create", IDD_CONTROLS, true},
        {"refuse", "create", IDD_CONTROLS, false},
        {"destroy", "create", IDD_CONTROLS, false},
        {"throw", "exchange", IDD_CONTROLS, true},
        {"throw", "init", IDD_CONTROLS, true},
        {"throw a number", "init", IDD_CONTROLS, true},
        {"destroy", "init", IDD_CONTROLS, false},
        {"destroy", "exchange", IDD_CONTROLS, false},
        {"destroy", "show", IDD_EMPTY, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.trouble) + " at " + row.at);
        errors.clear();
        std::vector<std::string> log;
        auto* dialog = new Recorder(log, row.trouble, row.at);
        EXPECT_FALSE(dialog->Create(row.id));
        EXPECT_EQ(dialog->m_hWnd, nullptr);
        EXPECT_EQ(std::count(log.begin(), log.end(), "post"), 0);
        EXPECT_EQ(!errors.empty(), row.reported);
        delete dialog;
        EXPECT_EQ(std::count(log.begin(), log.end(), "deleted"), 1);
        EXPECT_TRUE(framework::topLevelWindows().empty());
    }
}

/// Fails after its base has made the window: the owner deletes it, and the window goes with it.
TEST_F(Lifetime, AnObjectDeletedBeforeItsWindowTakesItAlong) {
    std::vector<std::string> log;
    auto* dialog = new Recorder(log);
    ASSERT_TRUE(dialog->Create(IDD_CONTROLS));
    const HWND window = dialog->m_hWnd;
    delete dialog;
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(std::count(log.begin(), log.end(), "post"), 0);
}

TEST_F(Lifetime, AHandlerThatThrowsEndsItsMessageOnly) {
    std::vector<std::string> log;
    auto* dialog = new Recorder(log, "throw", "destroy");
    ASSERT_TRUE(dialog->Create(IDD_CONTROLS));
    EXPECT_TRUE(DestroyWindow(dialog->m_hWnd));
    EXPECT_EQ(log.back(), "deleted");
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_NE(errors[0].find(L"no luck"), std::wstring::npos);
}

/// A dialog whose OK button destroys it, and whose name edit destroys it on every change.
class Suicidal : public CDialog {
  public:
    explicit Suicidal(int& deletedCount)
        : deleted_(deletedCount) {}

  protected:
    void OnOK() override { DestroyWindow(); }
    void OnChange() { DestroyWindow(); }
    void PostNcDestroy() override {
        ++deleted_;
        delete this;
    }
    DECLARE_MESSAGE_MAP()

  private:
    int& deleted_;
};
BEGIN_MESSAGE_MAP(Suicidal, CDialog)
ON_EN_CHANGE(IDC_NAME, &Suicidal::OnChange)
ON_CBN_SELCHANGE(IDC_KIND, &Suicidal::OnChange)
ON_LBN_SELCHANGE(IDC_LIST, &Suicidal::OnChange)
ON_BN_CLICKED(IDC_USE, &Suicidal::OnChange)
ON_BN_CLICKED(IDC_LINEAR, &Suicidal::OnChange)
ON_EN_KILLFOCUS(IDC_FACTOR, &Suicidal::OnChange)
ON_EN_SETFOCUS(IDC_COUNT, &Suicidal::OnChange)
END_MESSAGE_MAP()

TEST_F(Lifetime, HandlersMayDestroyTheirOwnWindow) {
    using namespace framework;
    const struct {
        const char* name;
        void (*act)(HWND dialog);
    } rows[] = {
        {"OK", [](HWND d) { user::press(GetDlgItem(d, IDOK)); }},
        {"Enter",
         [](HWND d) {
             SetFocus(GetDlgItem(d, IDC_USE));
             pressKey(VK_RETURN);
         }},
        {"typing", [](HWND d) { user::type(GetDlgItem(d, IDC_NAME), L"abc"); }},
        {"pasting", [](HWND d) { user::paste(GetDlgItem(d, IDC_NAME), L"abc"); }},
        {"a text of the program", [](HWND d) { CWnd::FromHandle(d)->SetDlgItemText(IDC_NAME, L"x"); }},
        {"check box", [](HWND d) { user::press(GetDlgItem(d, IDC_USE)); }},
        {"arrow to a radio",
         [](HWND d) {
             SetFocus(GetDlgItem(d, IDC_ENVELOPE));
             pressKey(VK_LEFT);
         }},
        {"combo box", [](HWND d) { user::choose(GetDlgItem(d, IDC_KIND), 0); }},
        {"list box", [](HWND d) { user::select(GetDlgItem(d, IDC_LIST), {0}); }},
        {"focus lost",
         [](HWND d) {
             SetFocus(GetDlgItem(d, IDC_FACTOR));
             pressKey(VK_TAB);
         }},
        {"focus got", [](HWND d) { SetFocus(GetDlgItem(d, IDC_COUNT)); }},
        {"lost by being disabled",
         [](HWND d) {
             SetFocus(GetDlgItem(d, IDC_FACTOR));
             EnableWindow(GetDlgItem(d, IDC_FACTOR), 0);
         }},
        {"lost by being hidden",
         [](HWND d) {
             SetFocus(GetDlgItem(d, IDC_FACTOR));
             ShowWindow(GetDlgItem(d, IDC_FACTOR), SW_HIDE);
         }},
        {"lost with the child",
         [](HWND d) {
             SetFocus(GetDlgItem(d, IDC_FACTOR));
             DestroyWindow(GetDlgItem(d, IDC_FACTOR));
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        int deleted = 0;
        auto& dialog = *new Suicidal(deleted);
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        const HWND window = dialog.m_hWnd;
        static_cast<CComboBox*>(dialog.GetDlgItem(IDC_KIND))->AddString(L"one");
        static_cast<CListBox*>(dialog.GetDlgItem(IDC_LIST))->AddString(L"one");
        dialog.ShowWindow(SW_SHOW);
        row.act(window);
        EXPECT_FALSE(IsWindow(window));
        EXPECT_EQ(deleted, 1);
        EXPECT_EQ(GetFocus(), nullptr);
    }
}

TEST_F(Lifetime, ChildrenGoBetweenTheirParentsFirstAndLastMessage) {
    static std::vector<std::string> log;
    log.clear();
    class Noted : public CWnd {
      public:
        const char* name = "";

      protected:
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message == WM_DESTROY) log.push_back(std::string(name) + "-destroy");
            if (message == WM_NCDESTROY) log.push_back(std::string(name) + "-last");
            return CWnd::WindowProc(message, wParam, lParam);
        }
        void PostNcDestroy() override { log.push_back(std::string(name) + "-post"); }
    };
    Noted parent, child, grandchild, owned;
    parent.name = "parent";
    child.name = "child";
    grandchild.name = "grandchild";
    owned.name = "owned";
    const CRect rect(0, 0, 10, 10);
    ASSERT_TRUE(parent.CreateEx(0, L"#32770", L"", WS_POPUP, rect, nullptr, 0));
    ASSERT_TRUE(child.Create(L"Static", L"", WS_VISIBLE, rect, &parent, 1));
    ASSERT_TRUE(grandchild.Create(L"Static", L"", WS_VISIBLE, rect, &child, 2));
    ASSERT_TRUE(owned.CreateEx(0, L"#32770", L"", WS_POPUP, rect, &child, 0));
    parent.DestroyWindow();
    EXPECT_EQ(joined(log),
              "owned-destroy owned-last owned-post parent-destroy child-destroy grandchild-destroy "
              "grandchild-last grandchild-post child-last child-post parent-last parent-post");
}

TEST_F(Lifetime, StaleHandlesAnswerNothing) {
    CDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    const HWND stale = dialog.m_hWnd;
    CWnd* lent = dialog.GetDlgItem(IDC_NAME);
    PostMessage(stale, WM_CLOSE);
    dialog.DestroyWindow();
    EXPECT_EQ(lent->GetSafeHwnd(), nullptr);
    CDialog next;
    ASSERT_TRUE(next.Create(IDD_CONTROLS)); // takes the places of the windows that went
    framework::pumpMessages();
    EXPECT_TRUE(IsWindow(next.m_hWnd));
    EXPECT_NE(next.m_hWnd, stale);
    EXPECT_FALSE(IsWindow(stale));
    EXPECT_EQ(CWnd::FromHandle(stale), nullptr);
    EXPECT_EQ(SendMessage(stale, WM_CLOSE), 0);
    EXPECT_FALSE(PostMessage(stale, WM_CLOSE));
    EXPECT_EQ(SetFocus(stale), nullptr);
    CWnd other;
    EXPECT_FALSE(other.Attach(stale));
    CRect rect;
    EXPECT_FALSE(GetWindowRect(stale, &rect));
}

TEST_F(Lifetime, OpenedAndClosedAThousandTimes) {
    for (int i = 0; i < 1000; ++i) {
        std::vector<std::string> log;
        auto* dialog = new Recorder(log);
        ASSERT_TRUE(dialog->Create(IDD_CONTROLS));
        dialog->ShowWindow(SW_SHOW);
        ASSERT_NE(dialog->GetDlgItem(IDC_NAME), nullptr);
        SendMessage(dialog->m_hWnd, i % 2 ? WM_DESTROY : WM_NULL);
        dialog->DestroyWindow();
        ASSERT_EQ(log.back(), "deleted");
    }
    EXPECT_TRUE(framework::topLevelWindows().empty());
    // What FromHandle lent is kept for one opening, not for all of them.
    CDialog last;
    ASSERT_TRUE(last.Create(IDD_EMPTY));
    EXPECT_LE(framework::windowState().slots.size(), 200u);
    EXPECT_TRUE(framework::windowState().deadTemporaries.empty());
}

} // namespace
