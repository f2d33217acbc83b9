#include "framework/windows/PaintDC.h"
#include "tests/support/GraphDialog.h"
#include "tests/support/MemoryHost.h"
#include "tests/workbench/desktop/DeskFixture.h"
#include "tests/workbench/desktop/LiveScreen.h"
#include "workbench/desktop/PaintedView.h"

#include <QtTest/QtTest>

#include <sstream>

namespace {

using namespace desktest;

class GraphOnScreen : public DeskTest {
  protected:
    GraphOnScreen() {
        EXPECT_TRUE(dialog.Create(IDD_GRAPH));
        dialog.ShowWindow(SW_SHOW);
        settle();
        view = dynamic_cast<workbench::desktop::PaintedView*>(widget(dialog.graph.m_hWnd));
        EXPECT_NE(view, nullptr);
        view->grab();
    }
    QColor pixel(int x, int y) {
        settle();
        return view->grab().toImage().pixelColor(x, y);
    }
    int painted() {
        pixel(0, 0);
        return view->pictures().painted();
    }

    support::MemoryHost host;
    GraphDialog dialog;
    workbench::desktop::PaintedView* view = nullptr;
};

TEST_F(GraphOnScreen, IsPaintedAsItWasDrawn) {
    // 300 x 130 pixels; the curve begins at (0, 65) and rises.
    ASSERT_EQ(view->size(), QSize(300, 130));
    EXPECT_EQ(pixel(1, 3), QColor(0, 0, 0));
    EXPECT_EQ(pixel(150, 65), QColor(255, 255, 0));
    EXPECT_EQ(pixel(299, 65), QColor(255, 255, 0));
    EXPECT_EQ(pixel(150, 64).green(), 0);
    // The mark stands at x = 0: its pen covers two columns, one of them outside.
    EXPECT_EQ(pixel(0, 60), QColor(255, 255, 255));
    EXPECT_EQ(pixel(2, 60).green(), 0);
    int red = 0;
    const QImage image = view->grab().toImage();
    for (int y = 0; y < 130; ++y)
        red += image.pixelColor(9, y) == QColor(255, 0, 0);
    EXPECT_GE(red, 1) << "the curve";
}

TEST_F(GraphOnScreen, TheMouseMovesTheLineAndLeavesTheCurve) {
    const int before = painted();
    const QColor grey(175, 175, 175);
    for (const int x : {30, 31, 200, 299}) {
        QTest::mouseMove(view, {x, 20});
        EXPECT_EQ(pixel(x, 0), grey) << x;
        EXPECT_EQ(pixel(x, 129), grey) << x;
        EXPECT_EQ(pixel(30, 1) == grey, x == 30) << "one line at a time";
    }
    EXPECT_EQ(painted(), before) << "the curve was not painted again";
    dialog.show(10);
    EXPECT_EQ(painted(), before + 1) << "but is when it changed";
}

TEST_F(GraphOnScreen, ClicksReachTheOwner) {
    QTest::mouseClick(view, Qt::LeftButton, {}, {75, 20});
    EXPECT_EQ(dialog.clicks, std::vector<double>{2.5});
    for (const int x : {74, 75})
        EXPECT_EQ(pixel(x, 60), QColor(255, 255, 255)) << "the mark is two pixels wide";
    EXPECT_EQ(pixel(73, 60), QColor(0, 0, 0));
    EXPECT_EQ(pixel(76, 60), QColor(0, 0, 0));
}

TEST_F(GraphOnScreen, ReplaysShowAtOnceAndUntilTheNextPaint) {
    const auto count = [&](QColor color) {
        settle();
        const QImage image = view->grab().toImage();
        int found = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                found += image.pixelColor(x, y) == color;
        return found;
    };
    const QColor red(255, 0, 0), grey(125, 125, 125);
    dialog.graph.StartSimulation();
    const int preview = count(grey);
    EXPECT_GT(preview, 0);
    EXPECT_EQ(count(red), 0);
    dialog.graph.Simulation(400);
    const int some = count(red);
    EXPECT_GT(some, 0);
    dialog.graph.Simulation(998);
    EXPECT_GT(count(red), some);
    EXPECT_EQ(count(grey), 0) << "twice as wide, so nothing of the preview is left";
    dialog.graph.Invalidate();
    EXPECT_EQ(count(red), 0);
    EXPECT_EQ(count(grey), preview);
}

TEST_F(GraphOnScreen, FarPointsAreCutOffAndDotsRound) {
    CArray<T_GRPH_D, T_GRPH_D&> flat;
    for (const double x : {0.0, 1.0})
        flat.Add({x, 0});
    dialog.graph.SetData(flat); // at the smallest integer
    EXPECT_EQ(pixel(150, 65), QColor(255, 255, 0));
    dialog.graph.SetDrawingGraphType(2);
    dialog.graph.SetData(flat);
    EXPECT_EQ(pixel(150, 3), QColor(0, 0, 0));
    dialog.show(3);
    EXPECT_EQ(pixel(2, 62), QColor(255, 0, 0)) << "a dot at (0, 65)";
    EXPECT_EQ(pixel(6, 62), QColor(0, 0, 0));
}

/// A dialog with something of its own below its controls.
class PaintedDialog : public CDialog {
  public:
    PaintedDialog()
        : CDialog(IDD_GRAPH) {}
    CPoint pressed;

  protected:
    void OnPaint() {
        CPaintDC dc(this);
        dc.FillSolidRect(10, 150, 20, 10, RGB(255, 0, 0));
    }
    void OnLButtonDown(UINT, CPoint point) { pressed = point; }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(PaintedDialog, CDialog)
ON_WM_PAINT()
ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

class PaintedDialogOnScreen : public DeskTest {};

TEST_F(PaintedDialogOnScreen, ShowsItsControlsAndWhatItPaints) {
    PaintedDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_GRAPH));
    dialog.ShowWindow(SW_SHOW);
    settle();
    const QImage image = widget(dialog.m_hWnd)->grab().toImage();
    EXPECT_EQ(image.pixelColor(12, 152), QColor(255, 0, 0));
    EXPECT_EQ(image.pixelColor(11, 152), image.pixelColor(0, 0)) << "no frame of its own";
    EXPECT_TRUE(widget(dialog, IDCANCEL)->isVisible());
    QTest::mouseClick(widget(dialog.m_hWnd), Qt::LeftButton, {}, {15, 155});
    EXPECT_EQ(dialog.pressed, CPoint(13, 153)) << "in its client area, within two pixels of border";
    QTest::mouseClick(widget(dialog, IDCANCEL), Qt::LeftButton);
    EXPECT_FALSE(IsWindowVisible(dialog.m_hWnd));
    dialog.DestroyWindow();
}

/// A picture as letters: '.' is its ground.
std::string letters(const QImage& image) {
    std::ostringstream text;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            text << (image.pixelColor(x, y) == QColor(0, 0, 0) ? '#' : '.');
        text << '\n';
    }
    return text.str();
}

TEST(RecordingPainter, SetsThePixelsOfLinesAndFills) {
    using framework::Recording;
    const framework::PenLook thin{}, wide{0, 2, false}, thick{0, 3, false};
    const struct {
        const char* name;
        std::function<void(Recording&)> draw;
        const char* pixels;
    } rows[] = {
        {"a line without its end",
         [&](Recording& r) {
             const CPoint to[] = {{4, 1}};
             r.lines(thin, {1, 1}, to);
         },
         "......\n.###..\n......\n......\n"},
        {"down, and up again",
         [&](Recording& r) {
             const CPoint down[] = {{1, 3}}, up[] = {{3, 0}};
             r.lines(thin, {1, 0}, down);
             r.lines(thin, {3, 3}, up);
         },
         ".#....\n.#.#..\n.#.#..\n...#..\n"},
        {"slanted to the left and back",
         [&](Recording& r) {
             const CPoint to[] = {{1, 1}, {3, 0}};
             r.lines(thin, {5, 3}, to);
         },
         "..#...\n.##...\n...##.\n.....#\n"},
        {"corners once",
         [&](Recording& r) {
             const CPoint to[] = {{4, 0}, {4, 3}, {1, 3}, {1, 0}};
             r.lines(thin, {1, 0}, to);
         },
         ".####.\n.#..#.\n.#..#.\n.####.\n"},
        {"points of a column in any order",
         [&](Recording& r) {
             const CPoint to[] = {{1, 2}, {1, 0}, {1, 1}, {3, 1}};
             r.lines(thin, {1, 1}, to);
         },
         ".#....\n.##...\n.#....\n......\n"},
        {"two pixels wide",
         [&](Recording& r) {
             const CPoint to[] = {{2, 9}};
             r.lines(wide, {2, -9}, to);
         },
         ".##...\n.##...\n.##...\n.##...\n"},
        {"three pixels wide",
         [&](Recording& r) {
             const CPoint to[] = {{2, 9}};
             r.lines(thick, {2, -9}, to);
         },
         ".###..\n.###..\n.###..\n.###..\n"},
        {"a fill without its right and bottom edge",
         [](Recording& r) {
             r.fill({1, 1, 4, 3}, 0);
         },
         "......\n.###..\n.###..\n......\n"},
        {"a part of another one, clipped",
         [&](Recording& r) {
             auto content = std::make_shared<Recording>();
             content->fill({0, 0, 9, 9}, RGB(255, 255, 255));
             content->fill({2, 1, 9, 9}, 0);
             r.transfer({1, 0, 5, 3}, {1, 0}, content);
         },
         "......\n..###.\n..###.\n......\n"},
    };
    for (const auto& row : rows) {
        Recording drawn;
        row.draw(drawn);
        QImage image(6, 4, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        workbench::desktop::RecordingPainter().paint(painter, drawn);
        painter.end();
        EXPECT_EQ(letters(image), row.pixels) << row.name;
    }
}

/// From outside, with the events of an X server.
TEST(LiveDesktop, MovesTheLineOfAGraphAndTellsItsOwnerOfClicks) {
    const TestFolder folder("live_graph");
    LiveScreen screen(folder, "", "graph-window");
    const auto graph = screen.waitFor("^graph .*painted [1-9]");
    ASSERT_TRUE(graph);
    const auto painted = graph->text.substr(0, graph->text.find(" clicks"));
    // The middle is 150 pixels from the left edge.
    screen.moveTo(graph->x - 50, graph->y - 20);
    screen.waitFor("^graph .* clicks line 100$");
    screen.moveTo(graph->x + 50, graph->y + 20);
    screen.waitFor("^graph .* clicks line 200$");
    screen.click(LiveScreen::Place{graph->x - 75, graph->y - 40, {}});
    const auto clicked = screen.waitFor("^graph .* clicks 2\\.500 line 75$");
    ASSERT_TRUE(clicked);
    EXPECT_EQ(clicked->text.substr(0, clicked->text.find(" clicks")), painted) << "the curve was left alone";
    screen.press("Escape");
    EXPECT_EQ(screen.end(), 0) << screen.errors();
}

} // namespace
