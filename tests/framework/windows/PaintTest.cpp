#include "framework/drawing/Surface.h"
#include "framework/windows/PaintDC.h"
#include "tests/framework/windows/WindowTest.h"
#include "tests/support/DrawnCommands.h"

namespace {

/// A window of 60 x 40 that draws how often it was painted.
class Canvas : public CWnd {
  public:
    int painted = 0;
    PAINTSTRUCT last;
    bool twice = false;    ///< opens a second context
    bool careless = false; ///< opens none
    bool fails = false;

    void open(UINT style = WS_POPUP) {
        CreateEx(0, nullptr, L"", style, CRect(0, 0, 60, 40), nullptr, 0);
        ShowWindow(SW_SHOW);
    }
    std::string shown() const {
        const auto* record = Record();
        return record && record->presented ? DrawnCommands::of(record->presented->drawn()) : "none";
    }
    const framework::WindowRecord& record() const { return *Record(); }

  protected:
    void OnPaint() {
        ++painted;
        if (careless) return;
        CPaintDC dc(this);
        last = dc.m_ps;
        dc.LineTo(painted, 0);
        if (fails) throw std::runtime_error("painting failed");
        if (!twice) return;
        CPaintDC second(this);
        second.LineTo(99, 99);
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Canvas, CWnd)
ON_WM_PAINT()
END_MESSAGE_MAP()

class Listener : public framework::ScriptedDesk {
  public:
    int told = 0;
    void WindowPainted(HWND) override { ++told; }
};

class Painting : public WindowTest {
  protected:
    Painting() { before_ = framework::setDesktop(&desk); }
    ~Painting() override { framework::setDesktop(before_); }
    Listener desk;

  private:
    framework::DesktopPort* before_ = nullptr;
};

constexpr const char* kErased = "fill 0,0-60,40 #f0f0f0\n";
std::string line(int x) {
    return "line pen #000000 1: 0,0 " + std::to_string(x) + ",0\n";
}

TEST_F(Painting, RunsFromTheMessageLoopOrAtOnce) {
    Canvas window;
    window.open();
    EXPECT_EQ(window.shown(), "none");
    framework::pumpMessages();
    EXPECT_EQ(window.shown(), kErased + line(1));
    framework::pumpMessages();
    EXPECT_EQ(window.painted, 1) << "all of it is valid";
    window.UpdateWindow();
    EXPECT_EQ(window.painted, 1);

    window.Invalidate(0);
    EXPECT_EQ(window.painted, 1) << "not before control is back";
    window.UpdateWindow();
    EXPECT_EQ(window.shown(), line(2)) << "not erased, but begun anew";
    const CRect part(10, 10, 20, 20), beside(70, 0, 80, 9);
    window.InvalidateRect(&beside);
    framework::pumpMessages();
    EXPECT_EQ(window.painted, 2) << "nothing of it is in the client area";
    window.InvalidateRect(&part, 0);
    window.InvalidateRect(&part, 1);
    framework::pumpMessages();
    EXPECT_EQ(window.shown(), kErased + line(3)) << "two parts are painted at once";
    EXPECT_EQ(window.last.rcPaint, CRect(0, 0, 60, 40));
    window.Invalidate();
    window.ValidateRect(nullptr);
    framework::pumpMessages();
    EXPECT_EQ(window.painted, 3);
    EXPECT_EQ(desk.told, 3);
}

TEST_F(Painting, OnlyWhatIsSeenIsPainted) {
    Canvas window;
    window.open();
    window.ShowWindow(SW_HIDE);
    framework::pumpMessages();
    EXPECT_EQ(window.painted, 0);
    window.ShowWindow(SW_SHOW);
    window.MoveWindow(0, 0, 0, 0);
    window.Invalidate();
    framework::pumpMessages();
    EXPECT_EQ(window.painted, 1) << "what was invalid before it shrank";
    EXPECT_EQ(window.shown(), "line pen #000000 1: 0,0 1,0\n") << "no ground to erase";
    window.MoveWindow(0, 0, 64, 40);
    framework::pumpMessages();
    EXPECT_EQ(window.last.rcPaint, CRect(0, 0, 64, 40));
    Canvas child;
    child.Create(nullptr, L"", WS_VISIBLE | WS_BORDER, CRect(2, 2, 22, 12), &window, 5);
    framework::pumpMessages();
    EXPECT_EQ(child.last.rcPaint, CRect(0, 0, 16, 6)) << "a new window is to be painted, without its border";
}

TEST_F(Painting, HandlersThatPaintOddly) {
    Canvas window;
    window.open();
    window.twice = true;
    framework::pumpMessages();
    EXPECT_EQ(window.shown(), kErased + line(1)) << "nothing was left for the second context";
    window.twice = false;
    SendMessage(window.m_hWnd, WM_PAINT);
    EXPECT_EQ(window.painted, 2);
    EXPECT_EQ(window.last.rcPaint, CRect());
    EXPECT_EQ(window.shown(), kErased + line(1)) << "a valid window goes on showing what it did";
    window.careless = true;
    window.Invalidate();
    framework::pumpMessages();
    framework::pumpMessages();
    EXPECT_EQ(window.painted, 3) << "asked once";
    window.careless = false;
    window.fails = true;
    window.Invalidate();
    framework::pumpMessages();
    EXPECT_EQ(window.shown(), kErased + line(4)) << "as far as it came";
    EXPECT_EQ(errors.size(), 1U);
}

TEST_F(Painting, ClientContextsDrawOverWhatIsShown) {
    Canvas window;
    window.open();
    framework::pumpMessages();
    const auto before = window.record().presented->share();
    for (int length = 1; length <= 3; ++length) {
        CClientDC dc(&window);
        CPen pen(PS_SOLID, 2, RGB(255, 0, 0));
        dc.SelectObject(&pen);
        dc.MoveTo(5, 5);
        for (int i = 1; i <= length; ++i)
            dc.LineTo(5 + i, 5 + i * i);
    }
    EXPECT_EQ(window.shown(), kErased + line(1) + "line pen #ff0000 2: 5,5 6,6 7,9 8,14\n");
    EXPECT_EQ(DrawnCommands::of(*before), kErased + line(1)) << "who holds what was shown keeps it";
    EXPECT_EQ(desk.told, 4);
    window.Invalidate();
    framework::pumpMessages();
    EXPECT_EQ(window.shown(), kErased + line(2)) << "until the next paint";
}

TEST_F(Painting, ContextsOutliveTheirWindow) {
    auto window = std::make_unique<Canvas>();
    window->open();
    CPaintDC paint(window.get());
    CClientDC client(window.get());
    window->DestroyWindow();
    EXPECT_EQ(paint.LineTo(1, 1), 1);
    EXPECT_EQ(client.LineTo(1, 1), 1);
    CClientDC none(window.get()), nothing(nullptr);
    CPaintDC noPaint(window.get());
    EXPECT_EQ(none.GetSafeHdc(), nullptr);
    EXPECT_EQ(nothing.LineTo(1, 1), 0);
    EXPECT_EQ(noPaint.GetSafeHdc(), nullptr);
}

} // namespace
