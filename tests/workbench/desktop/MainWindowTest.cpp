#include "workbench/desktop/MainWindow.h"

#include "host/chart/ChartCtrl.h"
#include "module/entry/VEXAGpsDialog.h"
#include "module/resources/resource.h"
#include "tests/workbench/cli/Program.h"
#include "tests/workbench/desktop/DeskFixture.h"
#include "workbench/desktop/ModuleDialogs.h"
#include "workbench/session/SafetyHistories.h"

#include <QtTest/QtTest>

namespace {

using namespace desktest;
using namespace workbench;
using namespace workbench::desktop;
namespace user = framework::user;

/// The main window with the cube, "Pull" then "Shear", and what it says.
class WindowWithModel : public DeskTest {
  protected:
    WindowWithModel() {
        writeCube(folder, kCubeStresses);
        folder.write("cube.toml", cubeDeck());
        EXPECT_EQ(runShell(folder, "vexa new cube.toml -o cube.wkm").exitCode, 0);
        Init_VEXA_gpsdll();
        window = std::make_unique<MainWindow>(host, output, *desk, frame);
        window->resize(900, 700);
        const auto opened = window->open(folder / "cube.wkm", {});
        EXPECT_TRUE(opened) << opened.error().message;
        window->showFirstResult();
        window->show();
        settle();
    }
    ~WindowWithModel() override {
        window.reset();
        settle();
    }

    QAction* entry(const QString& text) const {
        for (QAction* action : window->findChildren<QAction*>())
            if (action->text().remove('&') == text) return action;
        return nullptr;
    }
    QString readout() const { return window->statusBar()->findChild<QLabel*>()->text(); }
    QString titleOfBar() { return QString::fromStdString(window->view().result()->picture().valueTitle); }
    void click(QPoint at, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(&window->view(), Qt::LeftButton, modifiers, at);
        settle();
    }
    std::size_t pickedNodes() { return window->document()->GetCurSelectBufferAsNode().size(); }
    std::size_t pickedElements() { return window->document()->GetCurSelectBufferAsElem().size(); }

    TestFolder folder{"window"};
    DesktopOutput output;
    WorkbenchHost host{{}, &output};
    WindowFrame frame{L"test"};
    std::unique_ptr<MainWindow> window;
};

TEST_F(WindowWithModel, TheMenuOpensTheHistoryBesideTheDocument) {
    EXPECT_TRUE(safetyHistoryNames(*window->document()).empty());
    folder.write("cube_ssr_fos.out", "SUBCASE : a\n1 1 1 T\n");
    for (const char* other : {"cube_fos.out", "cubes_x_fos.out", "cube_ssr_fos.outer"})
        folder.write(other, "");
    EXPECT_EQ(safetyHistoryNames(*window->document()), std::vector<std::wstring>{L"ssr"});
    ASSERT_TRUE(entry("Safety Graph"));
    entry("Safety Graph")->trigger();
    settle();
    const HWND dialog = GetActiveWindow();
    const auto* chart = tqx::frx::findChart(GetDlgItem(dialog, IDC_SAFETY_CHART));
    ASSERT_TRUE(chart);
    EXPECT_EQ(chart->series.size(), 1u);
    EXPECT_TRUE(user::close(dialog));
    folder.write("cube__fos.out", "");
    EXPECT_EQ(safetyHistoryNames(*window->document()), (std::vector<std::wstring>{L"", L"ssr"}));
}

TEST_F(WindowWithModel, PicksIntoTheSelection) {
    const auto nodeAt = [&](std::size_t node) {
        ContourDrawing& drawing = window->view().result()->drawing();
        const Pixel at = drawing.camera().project(drawing.surface().toSurface(drawing.positions()[node]));
        return QPointF(at[0], window->view().height() - at[1]).toPoint();
    };
    window->view().setNamedView("front");
    settle();
    const QPoint inwards(4, -4), beside(20, 200);
    const QPoint first = nodeAt(0) + inwards, last = nodeAt(5) - inwards; // of the front side
    click(first);
    EXPECT_EQ(pickedNodes(), 1u);
    EXPECT_TRUE(readout().startsWith("Node 1: 200 N/mm")) << readout().toStdString();
    click(first, Qt::ControlModifier); // the same one
    EXPECT_EQ(pickedNodes(), 1u);
    click(last, Qt::ControlModifier);
    EXPECT_EQ(pickedNodes(), 2u);
    EXPECT_TRUE(readout().startsWith("Node 6: 200 N/mm")) << readout().toStdString();
    click(beside);
    EXPECT_EQ(pickedNodes(), 0u);
    EXPECT_EQ(readout(), "");
    entry("Elements")->trigger();
    click(first);
    EXPECT_EQ(pickedElements(), 1u);
    EXPECT_TRUE(readout().startsWith("Element 1: 200")) << readout().toStdString();
    EXPECT_FALSE(window->view().result()->drawing().surface().markedParts.empty());
    entry("Clear selection")->trigger();
    EXPECT_EQ(pickedElements(), 0u);
}

TEST_F(WindowWithModel, TurnsMovesAndEnlarges) {
    const auto camera = [&] {
        settle();
        return window->view().result()->drawing().camera();
    };
    const auto drag = [&](QPoint by, Qt::KeyboardModifiers modifiers) {
        QTest::mousePress(&window->view(), Qt::LeftButton, modifiers, {300, 300});
        // The button is down during a move; QTest's own moves do not say so.
        const QPointF to(QPoint(300, 300) + by);
        QMouseEvent move(QEvent::MouseMove, to, to, Qt::LeftButton, Qt::LeftButton, modifiers);
        QCoreApplication::sendEvent(&window->view(), &move);
        QTest::mouseRelease(&window->view(), Qt::LeftButton, modifiers, to.toPoint());
    };
    window->view().setNamedView("front");
    const ViewCamera front = camera();
    drag({0, 90}, {});
    const ViewCamera turned = camera();
    EXPECT_GT(turned.toViewer[2], 0.3); // from above now
    drag({50, -20}, Qt::ShiftModifier);
    const ViewCamera moved = camera();
    EXPECT_EQ(moved.toViewer, turned.toViewer);
    EXPECT_NEAR(moved.origin[0] - turned.origin[0], 50, 1e-6);
    EXPECT_NEAR(moved.origin[1] - turned.origin[1], 20, 1e-6);
    // What lies under the mouse stays there.
    const QPointF at(410, 220);
    const double height = window->view().height();
    const auto under = [&](const ViewCamera& c) {
        return std::pair{(at.x() - c.origin[0]) / c.pixelsPerLength,
                         (height - at.y() - c.origin[1]) / c.pixelsPerLength};
    };
    QWheelEvent wheel(at, at, {}, {0, 240}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&window->view(), &wheel);
    const ViewCamera enlarged = camera();
    EXPECT_NEAR(enlarged.pixelsPerLength / moved.pixelsPerLength, 1.44, 1e-9);
    EXPECT_NEAR(under(enlarged).first, under(moved).first, 1e-9);
    EXPECT_NEAR(under(enlarged).second, under(moved).second, 1e-9);
    const ContourPicture seen = window->view().pictureAsSeen();
    EXPECT_TRUE(isViewName(seen.view)) << seen.view;
    EXPECT_NEAR(seen.zoom.factor, 1.44, 1e-9);
    window->view().setNamedView("front");
    EXPECT_EQ(camera().origin, front.origin);
}

TEST_F(WindowWithModel, LanguageAndUnitsHoldAtOnce) {
    EXPECT_EQ(titleOfBar(), "Solid stress von Mises [N/mm²]");
    window->setUnits({"kN", "m"});
    EXPECT_EQ(titleOfBar(), "Solid stress von Mises [kN/m²]");
    EXPECT_NEAR(window->view().result()->drawing().extent().high, 200e3, 1);
    entry("한국어(K)")->trigger();
    settle();
    EXPECT_EQ(titleOfBar(), "솔리드 응력 von Mises [kN/m²]");
    EXPECT_NE(entry("조합 및 포락(C)..."), nullptr);
    EXPECT_EQ(entry("Combination and Envelope..."), nullptr);
    entry("English")->trigger();
    settle();
    EXPECT_NE(entry("Combination and Envelope..."), nullptr);
}

TEST_F(WindowWithModel, FatigueDefinitionsRunFromTheMenu) {
    const auto components = [&] {
        std::size_t count = 0;
        for (CPOHAnalysis* analysis : window->document()->results().GetChildList())
            for (CPOHCase* one : analysis->GetChildList())
                for (CPOHVCase* step : one->GetVCaseList())
                    count += step->GetResultIds().size();
        return count;
    };
    const std::size_t before = components();
    const auto* pool = window->document()->database().Pool<DPoolFatg>();
    const ItrKey key = pool->GetKeyList().at(0);
    entry(qText(pool->GetAtNU(key).name))->trigger();
    settle();
    EXPECT_GT(components(), before);
    EXPECT_TRUE(host.errors().empty()) << host.errors()[0];
}

/// Every dialog of the module opens over the window, as often as one likes, and closes with the document.
TEST_F(WindowWithModel, OpensEveryDialog) {
    for (const ModuleDialog& dialog : moduleDialogs()) {
        SCOPED_TRACE(testing::PrintToString(dialog.className));
        bool seen = false;
        desk->play({}, true, [&] {
            QWidget* shown = desk->widgetOf(GetActiveWindow());
            seen = shown && shown->isVisible() && shown != window.get() && !shown->windowTitle().isEmpty();
        });
        openModuleDialog(dialog, *window->document(), L"fos");
        desk->finishPlaying();
        EXPECT_TRUE(seen);
    }
    settle();
    EXPECT_GT(framework::topLevelWindows().size(), 1u); // the modeless ones
    const auto opened = window->open(folder / "cube.wkm", {});
    EXPECT_TRUE(opened);
    settle();
    EXPECT_EQ(framework::topLevelWindows().size(), 1u);
}

} // namespace
