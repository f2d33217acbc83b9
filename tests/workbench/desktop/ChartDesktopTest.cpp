#include "framework/windows/controls/Static.h"
#include "host/chart/ChartTable.h"
#include "tests/host/chart/ChartSetters.h"
#include "tests/support/MemoryHost.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/workbench/desktop/DeskFixture.h"
#include "workbench/desktop/ChartExport.h"

#include <QtTest/QtTest>

#include <cmath>

namespace {

using namespace desktest;
using namespace tqx::frx;
using workbench::desktop::ChartWidget;

/// A chart in place of a placeholder of a dialog.
class ChartOnScreen : public DeskTest {
  protected:
    ChartOnScreen() {
        host.texts[L"IDS_CHART_SUMMARY"] = L"%s: %d points, minimum %s, maximum %s";
        EXPECT_TRUE(dialog.Create(IDD_CONTROLS));
        dialog.MoveWindow(0, 0, 520, 440);
        dialog.ShowWindow(SW_SHOW);
        renew();
    }
    ~ChartOnScreen() override {
        workbench::desktop::chartFileChooser() = before;
        chart.reset();
        dialog.DestroyWindow();
        settle();
    }
    /// A fresh chart.
    void renew() {
        if (chart) chart->DestroyWindow();
        chart = std::make_unique<MChartCtrl>();
        EXPECT_TRUE(chart->Create({10, 10, 490, 400}, &dialog, 77));
        fillChart(*chart);
        show();
    }
    void show() {
        chart->SetDirty();
        chart->Redraw();
        settle();
    }
    ChartWidget& plot() const { return dynamic_cast<ChartWidget&>(*widget(chart->m_hWnd)); }
    QImage picture() const { return plot().grab().toImage(); }
    const ChartState& state() const { return *findChart(chart->m_hWnd); }
    /// A point of the data on the widget.
    QPoint at(double x, double y) const {
        const ChartPixel pixel = pixelOf(plot().view(), x, y);
        return QPoint(static_cast<int>(std::lround(pixel.x)), static_cast<int>(std::lround(pixel.y)));
    }
    void wheel(QPoint place, int steps) {
        QWheelEvent event(place, plot().mapToGlobal(place), {}, {0, 120 * steps}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&plot(), &event);
        settle();
    }

    support::MemoryHost host;
    Filled dialog;
    std::unique_ptr<MChartCtrl> chart;
    const workbench::desktop::FileChooser before = workbench::desktop::chartFileChooser();
};

TEST_F(ChartOnScreen, EverySetterChangesThePicture) {
    for (const ChartSetter& setter : chartSetters()) {
        renew();
        setter.before(*chart);
        show();
        const QImage former = picture();
        EXPECT_TRUE(setter.set(*chart)) << setter.name;
        show();
        EXPECT_NE(picture(), former) << setter.name;
    }
}

TEST_F(ChartOnScreen, MarkersAndDashesDifferFromEachOther) {
    std::vector<QImage> pictures{picture()};
    for (const unsigned code : {ChartMarker::Dot, ChartMarker::Square, ChartMarker::Triangle,
                                ChartMarker::InvertTriangle, ChartMarker::Diamond}) {
        chart->SetSeriesMarker(0, code);
        show();
        pictures.push_back(picture());
    }
    chart->SetSeriesMarker(0, ChartMarker::Line);
    for (const unsigned code : {ChartDash::Dash, ChartDash::Dot, ChartDash::DashDot, ChartDash::DashDotDot}) {
        chart->SetSeriesLineDash(0, code);
        show();
        pictures.push_back(picture());
    }
    for (std::size_t i = 0; i < pictures.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_NE(pictures[i], pictures[j]) << i << " and " << j;
}

TEST_F(ChartOnScreen, ShowsDataOnlyWhenAskedTo) {
    const QImage former = picture();
    chart->AddData(0, 2.5, 45.0);
    settle();
    EXPECT_EQ(picture(), former);
    EXPECT_FALSE(chart->Redraw());
    show();
    EXPECT_NE(picture(), former);
}

TEST_F(ChartOnScreen, WheelAndDragZoomAsFarAsIsAllowed) {
    const QImage whole = picture();
    wheel(at(3, 20), 2);
    EXPECT_EQ(picture(), whole) << "no zoom was allowed";
    for (const auto& [axes, zoomsX, zoomsY] :
         {std::tuple{3, true, true}, {1, true, false}, {2, false, true}}) {
        renew();
        chart->SetZoom(1, axes);
        show();
        const ChartView first = plot().view();
        const QPoint place = at(3, 20);
        wheel(place, 3);
        const ChartView zoomed = plot().view();
        EXPECT_EQ(zoomed.x.upper - zoomed.x.lower < first.x.upper - first.x.lower, zoomsX) << axes;
        EXPECT_EQ(zoomed.y.upper - zoomed.y.lower < first.y.upper - first.y.lower, zoomsY) << axes;
        EXPECT_LE((at(3, 20) - place).manhattanLength(), 6) << "what is under the mouse stays there";

        QTest::mousePress(&plot(), Qt::LeftButton, {}, place);
        QTest::mouseMove(&plot(), place + QPoint(30, 20));
        settle();
        QTest::mouseRelease(&plot(), Qt::LeftButton, {}, place + QPoint(30, 20));
        settle();
        const QPoint moved = at(3, 20) - place;
        EXPECT_NEAR(moved.x(), zoomsX ? 30 : 0, 6) << axes; // labels of other widths move the plot
        EXPECT_NEAR(moved.y(), zoomsY ? 20 : 0, 6) << axes;

        QTest::mouseDClick(&plot(), Qt::LeftButton, {}, place);
        settle();
        EXPECT_EQ(plot().view().x, first.x);
        EXPECT_EQ(plot().view().y, first.y);
    }
}

TEST_F(ChartOnScreen, TheToolTipNamesTheNearestValue) {
    chart->SetSeriesName(0, L"factor");
    show();
    const QPoint point = at(3, 30);
    QTest::mouseMove(&plot(), point + QPoint(3, 2));
    EXPECT_FALSE(plot().isTipShown()) << "no tool tip was asked for";
    chart->ShowToolTip(1);
    show();
    const QImage former = picture();
    QTest::mouseMove(&plot(), point + QPoint(2, 3));
    EXPECT_TRUE(plot().isTipShown());
    EXPECT_NE(picture(), former);
    QTest::mouseMove(&plot(), point + QPoint(40, 3));
    EXPECT_FALSE(plot().isTipShown());
    EXPECT_EQ(picture(), former);

    chart->SetChart(ChartForm::Bars);
    show();
    QTest::mouseMove(&plot(), at(2.8, 20)); // within the bar of 3, 30
    EXPECT_TRUE(plot().isTipShown());
    QTest::mouseMove(&plot(), at(2.8, 33));
    EXPECT_FALSE(plot().isTipShown());
}

TEST_F(ChartOnScreen, TheMenuExportsPictureAndTable) {
    const TemporaryFolder folder;
    const auto menu = [&]() -> QMenu* {
        for (QMenu* old : plot().findChildren<QMenu*>())
            delete old;
        QTest::mouseClick(&plot(), Qt::RightButton, {}, at(3, 20));
        settle();
        return plot().findChild<QMenu*>();
    };
    EXPECT_EQ(menu(), nullptr);
    for (const auto& [entries, count] :
         {std::pair{ChartMenu::All, 2}, {ChartMenu::Picture, 1}, {ChartMenu::Table, 1}}) {
        chart->ShowContextMenu(entries, 1);
        ASSERT_TRUE(menu());
        EXPECT_EQ(menu()->actions().size(), count);
    }
    chart->ShowContextMenu(1);
    QString chosen;
    workbench::desktop::chartFileChooser() = [&](QWidget*, const QString&, const QString&) { return chosen; };
    const struct {
        const char* name;
        int action;
        const char* begins;
    } rows[] = {{"a.png", 0, "\x89PNG"},
                {"b.pdf", 0, "%PDF"},
                {"c.svg", 0, "<svg "},
                {"d", 0, "\x89PNG"},
                {"e.csv", 1, "series,x,y\n1,1,10\n"},
                {"f", 1, "series,"}};
    for (const auto& row : rows) {
        chosen = QString::fromStdString((folder / row.name).string());
        menu()->actions()[row.action]->trigger();
        std::string name = row.name;
        if (name.size() == 1) name += row.action ? ".csv" : ".png";
        EXPECT_TRUE(bytesOf(folder / name).starts_with(row.begins)) << row.name;
        EXPECT_GT(bytesOf(folder / name).size(), 60u) << row.name;
    }
    EXPECT_TRUE(host.errors.empty());
    chosen = QString::fromStdString((folder / "missing/a.png").string());
    menu()->actions()[0]->trigger();
    EXPECT_EQ(host.errors.size(), 1u);
    chosen.clear();
    menu()->actions()[0]->trigger();
    EXPECT_EQ(host.errors.size(), 1u);
}

TEST_F(ChartOnScreen, OddDataAndSizesAreDrawn) {
    const double odd[] = {std::nan(""), HUGE_VAL, -HUGE_VAL, 0.0, 5e-324, 1e200, -1e200, 1e308, 1.0, 3.0};
    for (const bool log : {false, true})
        for (const int form : {ChartForm::Lines, ChartForm::Bars}) {
            renew();
            chart->SetChart(form);
            chart->SetAxisLog(ChartAxis::Both, log);
            for (const double x : odd)
                for (const double y : odd)
                    chart->AddData(0, x, y);
            show();
            for (const QSize size : {QSize(1, 1), QSize(3000, 20), QSize(200, 200)}) {
                chart->MoveWindow(0, 0, size.width(), size.height());
                settle();
                EXPECT_EQ(plot().size(), size);
            }
        }
    chart->RemoveDataAll();
    show();
}

TEST_F(ChartOnScreen, TheLastLabelHasRoom) {
    chart->ShowLegend(0);
    chart->SetAxisDataFormat(ChartAxis::X, L"%.4le");
    show();
    const double half = QFontMetricsF(plot().xAxis->tickLabelFont()).horizontalAdvance("5.0000e+00") / 2.0;
    EXPECT_LE(at(5, 0).x() + half, plot().width() - 1.0); // else it is left out
}

TEST_F(ChartOnScreen, ListsThatAreCutSaySo) {
    host.texts[L"IDS_CHART_MORE"] = L"... and %d more";
    const auto said = [&] {
        QStringList texts;
        for (int i = 0; i < plot().legend->elementCount(); ++i)
            if (const auto* text = dynamic_cast<QCPTextElement*>(plot().legend->elementAt(i)))
                texts << text->text();
        return texts;
    };
    EXPECT_TRUE(said().isEmpty());
    for (int s = 2; s < 60; ++s)
        chart->AddData(s, 1.0, s);
    show();
    ASSERT_EQ(said().size(), 1);
    EXPECT_EQ(said()[0], QString("... and %1 more").arg(61 - plot().legend->elementCount()));
    EXPECT_LE(plot().legend->outerRect().height(), plot().height());
}

/// The docs have this picture; VEXA_CHART_PICTURE names where it goes.
TEST_F(ChartOnScreen, PictureOfMarkersAndDashes) {
    chart->RemoveDataAll();
    chart->MoveWindow(0, 0, 760, 460);
    const unsigned markers[] = {ChartMarker::Dot,      ChartMarker::Square,
                                ChartMarker::Triangle, ChartMarker::InvertTriangle,
                                ChartMarker::Diamond,  ChartMarker::Line};
    const wchar_t* const markerNames[] = {L"Dot",     L"Square", L"Triangle", L"Invert triangle",
                                          L"Diamond", L"Line"};
    const unsigned dashes[] = {ChartDash::Line, ChartDash::Dash, ChartDash::Dot, ChartDash::DashDot,
                               ChartDash::DashDotDot};
    const wchar_t* const dashNames[] = {L"Line", L"Dash", L"Dot", L"Dash Dot", L"Dash Dot Dot"};
    int series = 0;
    const auto add = [&](const std::wstring& name) {
        for (int i = 0; i <= 12; ++i)
            chart->AddData(series, i, 11.5 - series + 0.35 * std::sin(0.5 * i + series));
        chart->SetSeriesName(series, name);
        chart->SetSeriesLineWidth(series, 2.0);
        return series++;
    };
    for (std::size_t i = 0; i < std::size(markers); ++i)
        EXPECT_TRUE(chart->SetSeriesMarker(add(std::wstring(L"marker ") + markerNames[i]), markers[i]));
    for (std::size_t i = 0; i < std::size(dashes); ++i)
        EXPECT_TRUE(chart->SetSeriesLineDash(add(std::wstring(L"dash ") + dashNames[i]), dashes[i]));
    chart->SetTitle(L"Markers and dashes");
    chart->SetAxisTitle(ChartAxis::X, L"x");
    chart->SetAxisTitle(ChartAxis::Y, L"y");
    chart->ShowMinorGridLine(1);
    show();
    EXPECT_EQ(plot().size(), QSize(760, 460));
    EXPECT_GT(plot().view().height, 340.0);
    EXPECT_GT(plot().view().width, 500.0);
    if (const char* path = std::getenv("VEXA_CHART_PICTURE")) {
        EXPECT_TRUE(plot().toPixmap().save(path));
    }
}

} // namespace
