#include "framework/windows/dialogs/Dialog.h"
#include "tests/framework/windows/WindowTest.h"

namespace {

std::string g_heard;

template <class... Arguments>
void hear(const char* name, Arguments... arguments) {
    g_heard = name;
    ((g_heard += " " + std::to_string(arguments)), ...);
}

int idOf(CWnd* window) {
    return window ? window->GetDlgCtrlID() : -1;
}

/// Hears every kind of message that maps name.
class Listening : public CWnd {
  protected:
    int OnCreate() {
        hear("create");
        return 0;
    }
    void OnDestroy() { hear("destroy"); }
    void OnClose() { hear("close"); }
    void OnPaint() { hear("paint"); }
    void OnSize(UINT how, int width, int height) { hear("size", how, width, height); }
    void OnMove(int x, int y) { hear("move", x, y); }
    void OnShowWindow(int show, UINT why) { hear("show", show, why); }
    void OnEnable(int enable) { hear("enable", enable); }
    void OnActivate(UINT how, CWnd* other, int) { hear("activate", how, idOf(other)); }
    void OnSetFocus(CWnd* from) { hear("focus", idOf(from)); }
    void OnKillFocus(CWnd* to) { hear("blur", idOf(to)); }
    void OnKeyDown(UINT key, UINT, UINT) { hear("key", key); }
    void OnChar(UINT c, UINT, UINT) { hear("char", c); }
    void OnHScroll(UINT code, UINT position, CWnd* from) { hear("hscroll", code, position, idOf(from)); }
    void OnVScroll(UINT code, UINT position, CWnd* from) { hear("vscroll", code, position, idOf(from)); }
    void OnMouseMove(UINT keys, CPoint p) { hear("mouse", keys, p.x, p.y); }
    void OnLButtonDown(UINT keys, CPoint p) { hear("down", keys, p.x, p.y); }
    void OnLButtonUp(UINT keys, CPoint p) { hear("up", keys, p.x, p.y); }
    void OnLButtonDblClk(UINT keys, CPoint p) { hear("double", keys, p.x, p.y); }
    void OnRButtonDown(UINT keys, CPoint p) { hear("rdown", keys, p.x, p.y); }
    void OnRButtonUp(UINT keys, CPoint p) { hear("rup", keys, p.x, p.y); }
    int OnMouseWheel(UINT keys, short by, CPoint p) {
        hear("wheel", keys, by, p.x, p.y);
        return 1;
    }
    void OnOne() { hear("one"); }
    void OnRange(UINT id) { hear("range", id); }
    void OnNote(NMHDR* header, LRESULT* result) {
        hear("note", header->idFrom, static_cast<int>(header->code));
        *result = 9;
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Listening, CWnd)
ON_WM_CREATE()
ON_WM_DESTROY()
ON_WM_CLOSE()
ON_WM_PAINT()
ON_WM_SIZE()
ON_WM_MOVE()
ON_WM_SHOWWINDOW()
ON_WM_ENABLE()
ON_WM_ACTIVATE()
ON_WM_SETFOCUS()
ON_WM_KILLFOCUS()
ON_WM_KEYDOWN()
ON_WM_CHAR()
ON_WM_HSCROLL()
ON_WM_VSCROLL()
ON_WM_MOUSEMOVE()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_LBUTTONDBLCLK()
ON_WM_RBUTTONDOWN()
ON_WM_RBUTTONUP()
ON_WM_MOUSEWHEEL()
ON_COMMAND(5, &Listening::OnOne)
ON_COMMAND_RANGE(6, 8, &Listening::OnRange)
ON_CBN_SELCHANGE(5, &Listening::OnOne)
ON_NOTIFY(LVN_ITEMCHANGED, 5, &Listening::OnNote)
END_MESSAGE_MAP()

/// Adds to its base's map and takes one entry over.
class Derived : public Listening {
  protected:
    void OnFive() { hear("derived"); }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Derived, Listening)
ON_COMMAND(5, &Derived::OnFive)
END_MESSAGE_MAP()

class MessageMaps : public WindowTest {};

TEST_F(MessageMaps, HandlersGetTheirArguments) {
    Derived window;
    CWnd child;
    ASSERT_TRUE(window.CreateEx(0, nullptr, L"", WS_POPUP, CRect(0, 0, 50, 50), nullptr, 0));
    EXPECT_EQ(g_heard, "create");
    ASSERT_TRUE(child.Create(L"Static", L"", WS_VISIBLE, CRect(0, 0, 5, 5), &window, 5));
    const auto other = reinterpret_cast<LPARAM>(child.m_hWnd);
    NMHDR header{child.m_hWnd, 5, LVN_ITEMCHANGED};
    NMHDR unheard{child.m_hWnd, 6, LVN_ITEMCHANGED};
    const struct {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
        const char* heard;
        LRESULT answer;
    } rows[] = {
        {WM_CLOSE, 0, 0, "close", 0},
        {WM_PAINT, 0, 0, "paint", 0},
        {WM_SIZE, 1, MAKELPARAM(300, 65535), "size 1 300 65535", 0},
        {WM_MOVE, 0, MAKELPARAM(-3, 7), "move -3 7", 0},
        {WM_SHOWWINDOW, 1, 3, "show 1 3", 0},
        {WM_ENABLE, 7, 0, "enable 1", 0},
        {WM_ACTIVATE, WA_CLICKACTIVE, other, "activate 2 5", 0},
        {WM_ACTIVATE, WA_INACTIVE, 0, "activate 0 -1", 0},
        {WM_SETFOCUS, static_cast<WPARAM>(other), 0, "focus 5", 0},
        {WM_KILLFOCUS, 0, 0, "blur -1", 0},
        {WM_KEYDOWN, VK_F4, 0, "key 115", 0},
        {WM_CHAR, 0xAC00, 0, "char 44032", 0},
        {WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 12), other, "hscroll 4 12 5", 0},
        {WM_VSCROLL, MAKEWPARAM(SB_ENDSCROLL, 0), 0, "vscroll 8 0 -1", 0},
        {WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(-1, -32768), "mouse 1 -1 -32768", 0},
        {WM_LBUTTONDOWN, 0, MAKELPARAM(1, 2), "down 0 1 2", 0},
        {WM_LBUTTONUP, 0, MAKELPARAM(1, 2), "up 0 1 2", 0},
        {WM_LBUTTONDBLCLK, 0, MAKELPARAM(1, 2), "double 0 1 2", 0},
        {WM_RBUTTONDOWN, 0, MAKELPARAM(1, 2), "rdown 0 1 2", 0},
        {WM_RBUTTONUP, 0, MAKELPARAM(1, 2), "rup 0 1 2", 0},
        {WM_MOUSEWHEEL, MAKEWPARAM(MK_SHIFT, static_cast<UINT>(-120)), MAKELPARAM(1, 2), "wheel 4 -120 1 2",
         1},
        {WM_COMMAND, 5, 0, "derived", 1},
        {WM_COMMAND, MAKEWPARAM(5, CBN_SELCHANGE), other, "one", 1},
        {WM_COMMAND, MAKEWPARAM(5, CBN_DROPDOWN), other, "", 0},
        {WM_COMMAND, 8, 0, "range 8", 1},
        {WM_COMMAND, 9, 0, "", 0},
        {WM_NOTIFY, 5, reinterpret_cast<LPARAM>(&header), "note 5 -101", 9},
        {WM_NOTIFY, 6, reinterpret_cast<LPARAM>(&unheard), "", 0},
        {WM_USER, 0, 0, "", 0},
    };
    for (const auto& row : rows) {
        g_heard.clear();
        EXPECT_EQ(window.SendMessage(row.message, row.wParam, row.lParam), row.answer) << row.heard;
        EXPECT_EQ(g_heard, row.heard) << row.message;
    }
    window.DestroyWindow();
    EXPECT_EQ(g_heard, "destroy");
}

/// A combo box that hears its own notifications.
class Hearing : public CComboBox {
  public:
    std::vector<std::string>* log = nullptr;
    int consumes = 0;
    CWnd* destroys = nullptr;

  protected:
    int OnChildNotify(UINT message, WPARAM wParam, LPARAM, LRESULT*) override {
        if (message != WM_COMMAND || HIWORD(static_cast<LPARAM>(wParam)) != CBN_SELCHANGE) return 0;
        log->push_back("control");
        if (destroys) destroys->DestroyWindow();
        return consumes;
    }
};

class HeardDialog : public CDialog {
  public:
    std::vector<std::string> log;
    int deleted = 0;

  protected:
    void OnKind() { log.push_back("dialog"); }
    void PostNcDestroy() override { ++deleted; }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(HeardDialog, CDialog)
ON_CBN_SELCHANGE(IDC_KIND, &HeardDialog::OnKind)
END_MESSAGE_MAP()

class ChildNotifications : public WindowTest {};

TEST_F(ChildNotifications, ReachTheControlBeforeItsParent) {
    HeardDialog dialog;
    Hearing kind;
    kind.log = &dialog.log;
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    ASSERT_TRUE(kind.SubclassDlgItem(IDC_KIND, &dialog));
    for (const wchar_t* text : {L"a", L"b", L"c", L"d"})
        kind.AddString(text);
    dialog.ShowWindow(SW_SHOW);

    framework::user::choose(kind.m_hWnd, 1);
    EXPECT_EQ(joined(dialog.log), "control dialog");
    dialog.log.clear();
    kind.consumes = 1;
    framework::user::choose(kind.m_hWnd, 2);
    EXPECT_EQ(joined(dialog.log), "control");
    dialog.log.clear();
    kind.consumes = 0;
    kind.destroys = &dialog; // nobody is left to hear it
    framework::user::choose(kind.m_hWnd, 3);
    EXPECT_EQ(joined(dialog.log), "control");
    EXPECT_EQ(dialog.deleted, 1);
}

} // namespace
