#include "module/graphs/GraphWnd.h"

#include "framework/drawing/PictureDC.h"
#include "framework/drawing/Surface.h"
#include "framework/windows/desktop/UserActions.h"
#include "tests/support/DialogFixture.h"
#include "tests/support/DrawnCommands.h"

#include <array>
#include <bit>
#include <functional>
#include <limits>

namespace {

constexpr UINT kPlace = 1015;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Points = CArray<T_GRPH_D, T_GRPH_D&>;

Points pointsOf(std::initializer_list<T_GRPH_D> list) {
    Points points;
    for (const auto& point : list)
        points.Add(point);
    return points;
}

/// A window with a placeholder of 100 x 50 and the graph in its place.
class GraphWindow : public DialogFixture {
  protected:
    GraphWindow() {
        host.texts[L"IDS_UTIL_FONT_ARIAL"] = L"Arial";
        owner.CreateEx(0, nullptr, L"", WS_POPUP, CRect(0, 0, 300, 200), nullptr, 0);
        place.Create(L"Static", L"", WS_VISIBLE, CRect(20, 30, 120, 80), &owner, kPlace);
        place.Detach(); // what is made by a template has no object
        owner.ShowWindow(SW_SHOW);
    }
    ~GraphWindow() override {
        s_test = nullptr;
        owner.DestroyWindow();
    }
    void start(std::initializer_list<T_GRPH_D> list) {
        ASSERT_EQ(graph.Init(&owner, kPlace), 1);
        graph.SetLButtonDownFunc(&clicked);
        s_test = this;
        set(list);
        framework::pumpMessages();
    }
    void set(std::initializer_list<T_GRPH_D> list) {
        Points points = pointsOf(list);
        EXPECT_EQ(graph.SetData(points), 1);
    }
    std::string shown() {
        framework::pumpMessages();
        const auto* record = framework::findWindow(graph.m_hWnd);
        return record->presented ? DrawnCommands::of(record->presented->drawn()) : "none";
    }
    void mouse(UINT message, int x, int y) {
        EXPECT_TRUE(framework::user::mouse(graph.m_hWnd, message, {x, y}));
    }
    static void clicked(CWnd* parent, double x, IGrahpWndPos* pos) {
        EXPECT_EQ(parent, &s_test->owner);
        s_test->clicks.push_back(x);
        if (s_test->onClick) s_test->onClick(*pos);
    }

    CWnd owner, place;
    CGraphWnd graph;
    std::vector<double> clicks;
    std::function<void(IGrahpWndPos&)> onClick;

  private:
    static inline GraphWindow* s_test = nullptr;
};

// The series (0, 1), (2, -3), (4, 2): x from 0 to 4 over 100 pixels, y from -3 to 3 over 50.
const std::initializer_list<T_GRPH_D> kSeries = {{0, 1}, {2, -3}, {4, 2}};
const std::string kPicture = "transfer 0,0-100,50 from 0,0\n"
                             "  fill 0,0-100,50 #000000\n"
                             "  line pen #ff0000 1: 0,17 50,50 100,9\n"
                             "  line pen #ffff00 1: 0,25 100,25\n";
const std::string kPreview = "transfer 0,0-100,50 from 0,0\n"
                             "  fill 0,0-100,50 #000000\n"
                             "  line pen #7d7d7d 1: 0,17 50,50 100,9\n"
                             "  line pen #ffff00 1: 0,25 100,25\n";
std::string markAt(int x) {
    const std::string at = std::to_string(x);
    return "line pen #ffffff 2: " + at + ",22 " + at + ",28\n";
}
std::string slidingAt(int x) {
    const std::string at = std::to_string(x);
    return "line pen #afafaf 1: " + at + ",0 " + at + ",50\n";
}

TEST_F(GraphWindow, TakesThePlaceOfItsControl) {
    const HWND control = GetDlgItem(owner.m_hWnd, kPlace);
    EXPECT_EQ(graph.Init(&owner, kPlace + 1), 0);
    EXPECT_EQ(graph.Init(nullptr, kPlace), 0);
    EXPECT_EQ(graph.CallOnSize(&owner), 0) << "before Init";
    set(kSeries); // draws on nothing
    ASSERT_EQ(graph.Init(&owner, kPlace), 1);
    EXPECT_EQ(graph.m_hWnd, control);
    EXPECT_TRUE(graph.GetStyle() & WS_CLIPCHILDREN);
    EXPECT_EQ(graph.Init(&owner, kPlace), 0) << "already attached";
    CGraphWnd other;
    EXPECT_EQ(other.Init(&owner, kPlace), 0);
    EXPECT_EQ(shown(), "fill 0,0-100,50 #f0f0f0\n") << "valid, but nothing is drawn before SetData";
    set(kSeries);
    EXPECT_EQ(shown(), kPicture + markAt(0));
}

TEST_F(GraphWindow, FollowsTheMouseWithoutTouchingTheCurve) {
    start(kSeries);
    const auto curve = [&] {
        const auto& record = *framework::findWindow(graph.m_hWnd);
        const auto& first = record.presented->drawn().commands().front();
        return std::get<framework::TransferCommand>(first).content;
    };
    const auto before = curve();
    mouse(WM_MOUSEMOVE, 30, 10);
    EXPECT_EQ(shown(), kPicture + markAt(0) + slidingAt(30));
    mouse(WM_MOUSEMOVE, 99, 49);
    EXPECT_EQ(shown(), kPicture + markAt(0) + slidingAt(99));
    EXPECT_EQ(curve(), before) << "the same commands, not equal ones";
    mouse(WM_MOUSEMOVE, 100, 49);
    EXPECT_EQ(shown(), kPicture + markAt(0) + slidingAt(99)) << "gone with the next paint only";
    graph.Invalidate();
    EXPECT_EQ(shown(), kPicture + markAt(0));
    graph.SetMouseMove(0);
    mouse(WM_MOUSEMOVE, 30, 10);
    EXPECT_EQ(shown(), kPicture + markAt(0));
}

TEST_F(GraphWindow, ClicksGoToTheOwnerAndMoveTheMark) {
    start(kSeries);
    mouse(WM_LBUTTONDOWN, 25, 10);
    EXPECT_EQ(clicks, std::vector<double>{1});
    EXPECT_EQ(shown(), kPicture + markAt(25));
    // Where the owner snaps the mark to a point, the click still comes last.
    onClick = [](IGrahpWndPos& pos) { EXPECT_EQ(pos.SetPosByXValue(3.1), 1); };
    mouse(WM_LBUTTONDOWN, 75, 10);
    EXPECT_EQ(clicks, (std::vector<double>{1, 3}));
    EXPECT_EQ(shown(), kPicture + markAt(75));
    mouse(WM_LBUTTONDOWN, 100, 10);
    EXPECT_EQ(clicks.size(), 2U) << "beside the graph";
    graph.SetLButtonDown(0);
    mouse(WM_LBUTTONDOWN, 25, 10);
    graph.SetLButtonDown(1);
    EXPECT_EQ(clicks.size(), 2U);
    EXPECT_EQ(shown(), kPicture + markAt(75));
    graph.SetLButtonDownFunc(nullptr);
    mouse(WM_LBUTTONDOWN, 25, 10);
    EXPECT_EQ(shown(), kPicture + markAt(25));
    graph.SetDrawPosMark(0);
    mouse(WM_MOUSEMOVE, 30, 10);
    EXPECT_EQ(shown(), kPicture) << "neither mark nor line";
}

TEST_F(GraphWindow, AnOwnerMayCloseTheGraphItIsCalledFrom) {
    start(kSeries);
    onClick = [&](IGrahpWndPos&) { owner.DestroyWindow(); };
    mouse(WM_LBUTTONDOWN, 25, 10);
    EXPECT_EQ(graph.m_hWnd, nullptr);
    set(kSeries); // the canvas is gone
    graph.Simulation(1);
    EXPECT_EQ(graph.SetPosMark(0), 1);
}

TEST_F(GraphWindow, PositionsOfTheMark) {
    start(kSeries);
    const struct {
        std::function<int(CGraphWnd&)> move;
        int answer;
        int mark;
    } rows[] = {
        {[](CGraphWnd& g) { return g.SetPosMark(2); }, 1, 100},
        {[](CGraphWnd& g) { return g.SetPosMark(1); }, 1, 50},
        {[](CGraphWnd& g) { return g.SetPosMark(3); }, 0, 50},
        {[](CGraphWnd& g) { return g.SetPosMark(-1); }, 0, 50},
        {[](CGraphWnd& g) { return g.SetPosMarkByValue(1); }, 1, 25},
        {[](CGraphWnd& g) { return g.SetPosMarkByValue(-2); }, 1, -50},
        {[](CGraphWnd& g) { return g.SetPosByXValueNoSnap(3); }, 1, 75},
        {[](CGraphWnd& g) { return g.SetPosByXValue(3.1); }, 1, 100},
        {[](CGraphWnd& g) { return g.SetPosByXValue(1); }, 1, 0}, // a tie
        {[](CGraphWnd& g) { return g.GetPosByXValue(2.9); }, 1, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.move(graph), row.answer);
        EXPECT_EQ(shown(), kPicture + markAt(row.mark));
    }
    framework::PictureDC dc(CSize(100, 50));
    graph.DrawSliding(&dc);
    EXPECT_EQ(DrawnCommands::of(dc.drawn()), slidingAt(0)) << "the line went with the mark, but is not shown";
    set(kSeries);
    EXPECT_EQ(shown(), kPicture + markAt(0)) << "new points bring the mark back";
}

TEST_F(GraphWindow, DrawsASecondSeriesUnderTheFirst) {
    start(kSeries);
    Points added = pointsOf({{-4, 0}, {4, 6}, {0, -3}});
    EXPECT_EQ(graph.SetAddedData(added), 1);
    // x now from -4 to 4, y from -6 to 6
    EXPECT_EQ(shown(), "transfer 0,0-100,50 from 0,0\n"
                       "  fill 0,0-100,50 #000000\n"
                       "  line pen #00ff00 1: 0,25 100,0 50,37\n"
                       "  line pen #ff0000 1: 50,21 75,37 100,17\n"
                       "  line pen #ffff00 1: 0,25 100,25\n" +
                           markAt(0));
    EXPECT_EQ(graph.GetPosByXValue(-4), 0) << "positions are those of the first series";
    // The first series anew starts the ranges anew; without points nothing is drawn.
    set(kSeries);
    EXPECT_EQ(shown(), "transfer 0,0-100,50 from 0,0\n"
                       "  fill 0,0-100,50 #000000\n"
                       "  line pen #00ff00 1: -100,25 100,-25 0,50\n"
                       "  line pen #ff0000 1: 0,17 50,50 100,9\n"
                       "  line pen #ffff00 1: 0,25 100,25\n" +
                           markAt(0));
    set({});
    EXPECT_EQ(shown(), "transfer 0,0-100,50 from 0,0\n"
                       "  fill 0,0-100,50 #000000\n"
                       "  line pen #ffff00 1: 0,25 100,25\n" +
                           markAt(0));
}

TEST_F(GraphWindow, DrawingTypes) {
    start(kSeries);
    const struct {
        int type;
        int height;
        std::string drawn;
    } rows[] = {
        {1, 50, "line pen #0000ff 1: 0,17 50,50 100,9\n"},
        {2, 50, "ellipses pen #000000 1 brush #0000ff: -2,15-2,19 48,48-52,52 98,7-102,11\n"},
        {2, 49, "ellipses pen #000000 1 brush #0000ff: -1,15-1,17 49,47-51,49 99,7-101,9\n"},
        {2, 24, ""}, // a radius of 0
        {3, 50, ""},
        {0, 50, ""},
    };
    for (const auto& row : rows) {
        graph.SetDrawingGraphType(row.type);
        framework::PictureDC dc(CSize(100, row.height));
        CRect rect(0, 0, 100, row.height);
        graph.DrawFunction(&dc, rect, 2, RGB(0, 0, 255));
        EXPECT_EQ(DrawnCommands::of(dc.drawn()), row.drawn) << row.type << " " << row.height;
    }
}

TEST_F(GraphWindow, SegmentsAreThoseAskedFor) {
    start(kSeries);
    const struct {
        int segments;
        const char* drawn;
        bool throws;
    } rows[] = {
        {-5, "", false},
        {0, "", false},
        {1, "line pen #0000ff 1: 0,17 50,50\n", false},
        {2, "line pen #0000ff 1: 0,17 50,50 100,9\n", false},
        {3, "line pen #0000ff 1: 0,17 50,50 100,9\n", true},
        {std::numeric_limits<int>::max(), "line pen #0000ff 1: 0,17 50,50 100,9\n", true},
    };
    CRect rect(0, 0, 100, 50);
    for (const auto& row : rows) {
        framework::PictureDC dc(CSize(100, 50));
        const CPen* before = dc.SelectObject(static_cast<CPen*>(dc.SelectStockObject(BLACK_PEN)));
        if (row.throws)
            EXPECT_THROW(graph.DrawFunction(&dc, rect, row.segments, RGB(0, 0, 255)), CInvalidArgException);
        else
            graph.DrawFunction(&dc, rect, row.segments, RGB(0, 0, 255));
        EXPECT_EQ(DrawnCommands::of(dc.drawn()), row.drawn) << row.segments;
        EXPECT_EQ(dc.SelectStockObject(BLACK_PEN), before) << "the pen is put back";
    }
    framework::PictureDC dc(CSize(100, 50));
    EXPECT_THROW(graph.DrawSimulationFunction(9, &dc, rect, 3, 0), CInvalidArgException);
    EXPECT_NO_THROW(graph.DrawSimulationFunction(9.0, &dc, rect, 3, 0));
}

TEST_F(GraphWindow, Replays) {
    start(kSeries);
    graph.SetPosMark(2);
    graph.StartSimulation();
    EXPECT_EQ(shown(), kPreview) << "no mark meanwhile";
    const auto replayed = [](const char* points) {
        return kPreview + "line pen #ff0000 2: " + points + "\n";
    };
    graph.Simulation(-1);
    EXPECT_EQ(shown(), kPreview);
    graph.Simulation(0);
    EXPECT_EQ(shown(), replayed("0,17 50,50"));
    graph.Simulation(1);
    EXPECT_EQ(shown(), replayed("0,17 50,50 100,9"));
    graph.Simulation(99);
    EXPECT_EQ(shown(), replayed("0,17 50,50 100,9"));
    mouse(WM_LBUTTONDOWN, 25, 10);
    EXPECT_TRUE(clicks.empty());
    mouse(WM_MOUSEMOVE, 25, 10);
    EXPECT_EQ(shown(), kPreview) << "what was replayed lasts until the next paint";
    graph.Simulation(-0.1);
    EXPECT_EQ(shown(), kPreview);
    graph.Simulation(0.5);
    EXPECT_EQ(shown(), replayed("0,17 50,50")) << "the last segment reaches beyond";
    graph.Simulation(2.0);
    EXPECT_EQ(shown(), replayed("0,17 50,50 100,9"));
    graph.EndSimulation();
    EXPECT_EQ(shown(), kPicture + markAt(100) + slidingAt(25));
}

TEST_F(GraphWindow, CallDrawingAddsLabelAndFrame) {
    start(kSeries);
    const std::string axis = "line pen #afafaf 1: 10,45 110,45\n";
    const std::string curve = "line pen #ff0000 1: 10,37 60,70 110,29\n";
    const std::string outline = "line pen #afafaf 1: 10,20 110,20 110,70 10,70 10,20\n";
    const auto draw = [&](int index) {
        framework::PictureDC dc(CSize(200, 100));
        graph.CallDrawing(&dc, 10, 20, index);
        EXPECT_EQ(dc.GetBkMode(), index < 3 ? TRANSPARENT : OPAQUE);
        return DrawnCommands::of(dc.drawn());
    };
    EXPECT_EQ(draw(3), axis + curve + outline);
    EXPECT_EQ(draw(1), axis + curve + "line pen #afafaf 1: 60,20 60,70\n" +
                           "text 10,70 #ff0000 align 0 Arial -11: **Time Step : 2\n" + outline);
    framework::PictureDC dc(CSize(200, 100));
    EXPECT_THROW(graph.CallDrawing(&dc, 10, 20, -1), CInvalidArgException);
    EXPECT_EQ(DrawnCommands::of(dc.drawn()), axis + curve);
    framework::PictureDC labelled(CSize(200, 100));
    graph.CallDrawing(&labelled, 10, 20, 1);
    LOGFONT font;
    font.lfHeight = -11;
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfOutPrecision = OUT_CHARACTER_PRECIS;
    font.lfClipPrecision = CLIP_CHARACTER_PRECIS;
    framework::setFaceName(font, L"Arial");
    EXPECT_EQ(labelled.drawn().text({}).font, font);
    set({{1.0 / 3, 1}, {1e8, 1}});
    EXPECT_NE(draw(0).find("**Time Step : 0.333333\n"), std::string::npos);
    EXPECT_NE(draw(1).find("**Time Step : 1e+08\n"), std::string::npos);
}

TEST_F(GraphWindow, FollowsTheSizeOfItsOwner) {
    start(kSeries);
    graph.MoveWindow(0, 0, 200, 100);
    EXPECT_EQ(shown(), "fill 0,0-200,100 #f0f0f0\n" + kPicture + markAt(0)) << "it is the owner's business";
    CWnd* control = owner.GetDlgItem(kPlace);
    EXPECT_EQ(graph.CallOnSize(control), 1);
    EXPECT_EQ(shown(), "transfer 0,0-200,100 from 0,0\n"
                       "  fill 0,0-200,100 #000000\n"
                       "  line pen #ff0000 1: 0,34 100,100 200,17\n"
                       "  line pen #ffff00 1: 0,50 200,50\n"
                       "line pen #ffffff 2: 0,44 0,56\n");
}

TEST_F(GraphWindow, OddDataIsDrawnAllTheSame) {
    constexpr int kSmallest = std::numeric_limits<int>::min();
    const std::string far = std::to_string(kSmallest + 25);
    const std::string farX = std::to_string(kSmallest + 50);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        std::initializer_list<T_GRPH_D> list;
        std::string curve;
    } rows[] = {
        {{}, ""},
        {{{5, 5}}, ""},
        {{{5, 5}, {5, 6}, {5, 7}}, "  line pen #ff0000 1: 0,0 0,0 0,0\n"},
        {{{0, 0}, {1, 0}}, "  line pen #ff0000 1: 0," + far + " 100," + far + "\n"},
        {{{0, 1}, {1, 5}}, "  line pen #ff0000 1: 0,20 100,0\n"},
        {{{0, 1}, {1, nan}, {2, 2}}, "  line pen #ff0000 1: 0,13 50," + far + " 100,0\n"},
        {{{0, 1}, {nan, 1}, {2, 1}, {4, 1}}, "  line pen #ff0000 1: -100,0 " + farX + ",0 0,0 100,0\n"},
        {{{0, 1}, {kInfinity, 1}}, "  line pen #ff0000 1: " + farX + ",0 " + farX + ",0\n"},
    };
    start({});
    for (const auto& row : rows) {
        set(row.list);
        EXPECT_EQ(shown(), "transfer 0,0-100,50 from 0,0\n  fill 0,0-100,50 #000000\n" + row.curve +
                               "  line pen #ffff00 1: 0,25 100,25\n" + markAt(0));
        graph.SetDrawingGraphType(2);
        set(row.list);
        graph.SetDrawingGraphType(1);
    }
    set({});
    EXPECT_EQ(graph.SetPosMark(0), 0);
    EXPECT_EQ(graph.SetPosMarkByValue(1), 0);
    EXPECT_EQ(graph.SetPosByXValue(1), 0);
    EXPECT_EQ(graph.GetPosByXValue(1), 0);
    mouse(WM_LBUTTONDOWN, 25, 10);
    EXPECT_TRUE(clicks.empty());
    EXPECT_NE(shown().find(markAt(25)), std::string::npos);
    set({{5, 5}, {5, 6}});
    mouse(WM_LBUTTONDOWN, 25, 10);
    EXPECT_EQ(clicks, std::vector<double>{0}) << "no range of x";
}

TEST_F(GraphWindow, AWindowOfNoSize) {
    GetDlgItem(owner.m_hWnd, kPlace);
    MoveWindow(GetDlgItem(owner.m_hWnd, kPlace), CRect(20, 30, 20, 30));
    start(kSeries);
    mouse(WM_MOUSEMOVE, 0, 0);
    mouse(WM_LBUTTONDOWN, 0, 0);
    graph.SetDrawingGraphType(2);
    set(kSeries);
    graph.StartSimulation();
    graph.Simulation(1);
    graph.EndSimulation();
    EXPECT_TRUE(clicks.empty()) << "no point lies in it";
    framework::PictureDC dc(CSize(10, 10));
    graph.CallDrawing(&dc, 3, 4, 0);
    graph.MoveWindow(20, 30, 100, 50);
    graph.SetDrawingGraphType(1);
    EXPECT_EQ(graph.CallOnSize(&graph), 1);
    EXPECT_EQ(shown(), kPicture + markAt(0));
}

TEST_F(GraphWindow, ConversionsAreItsOwn) {
    CRect rect(0, 0, 100, 50);
    double x[] = {0, 4}, y[] = {-3, 3}, flat[] = {2, 2};
    int px = 9, py = 9;
    EXPECT_EQ(graph.ConvertL2W(px, py, 2, -3, rect, x, y), 1);
    EXPECT_EQ(CPoint(px, py), CPoint(50, 50));
    EXPECT_EQ(graph.ConvertL2W(px, py, 2, -3, rect, flat, y), 0);
    EXPECT_EQ(CPoint(px, py), CPoint());
    double vx = 9, vy = 9;
    EXPECT_EQ(graph.ConvertW2L(100, 0, vx, vy, rect, x, y), 1);
    EXPECT_EQ(vx, 4);
    EXPECT_EQ(vy, 3);
    EXPECT_EQ(graph.ConvertW2L(100, 0, vx, vy, rect, flat, y), 0);
    EXPECT_EQ(vx, 0);
    EXPECT_EQ(vy, 0);
    int index = 7;
    EXPECT_EQ(graph.BiSearch(1, index), 0);
    EXPECT_EQ(index, 7);
}

#if defined(__GNUC__)
/// Where the compiler looks a virtual operation up.
template <class Operation>
std::ptrdiff_t slotOf(Operation operation) {
    const auto parts = std::bit_cast<std::array<std::ptrdiff_t, 2>>(operation);
    return (parts[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(GraphWindowClass, VirtualOperationsKeepTheirOrder) {
    using MarkAt = void (CGraphWnd::*)(CDC*, CPoint);
    using Mark = void (CGraphWnd::*)(CDC*);
    const std::ptrdiff_t slots[] = {
        slotOf(&CGraphWnd::DrawGraphData),       slotOf(&CGraphWnd::DrawFunction),
        slotOf(&CGraphWnd::DrawBackGround),      slotOf(&CGraphWnd::DrawAxis),
        slotOf(MarkAt{&CGraphWnd::DrawPosMark}), slotOf(Mark{&CGraphWnd::DrawPosMark})};
    for (std::size_t i = 1; i < std::size(slots); ++i)
        EXPECT_EQ(slots[i], slots[0] + static_cast<std::ptrdiff_t>(i));
    EXPECT_EQ(slotOf(&IGrahpWndPos::SetPosByXValue), 0);
}
#endif

} // namespace
