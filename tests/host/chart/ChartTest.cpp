#include "framework/text/CodePage.h"
#include "framework/windows/dialogs/TextWidth.h"
#include "host/chart/ChartTable.h"
#include "tests/host/chart/ChartFixture.h"
#include "tests/support/Golden.h"
#include "tests/support/RandomIntegers.h"

#include <cmath>
#include <limits>
#include <sstream>

namespace {

using namespace tqx::frx;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST_F(ChartFixture, EverySetterChangesThePicture) {
    auto setters = chartSetters();
    for (auto& ability : chartAbilities())
        setters.push_back(ability);
    for (const ChartSetter& setter : setters) {
        MChartCtrl fresh;
        ASSERT_TRUE(fresh.Create({0, 0, 400, 300}, &view, 8));
        fillChart(fresh);
        setter.before(fresh);
        const std::string before = fresh.GetSvg();
        EXPECT_TRUE(setter.set(fresh)) << setter.name;
        EXPECT_NE(fresh.GetSvg(), before) << setter.name;
        const std::string after = fresh.GetSvg();
        EXPECT_TRUE(setter.set(fresh)) << setter.name;
        if (std::string(setter.name).find("AddData") != 0) {
            EXPECT_EQ(fresh.GetSvg(), after) << setter.name << " a second time";
        }
        fresh.DestroyWindow();
    }
}

TEST_F(ChartFixture, WhatHasNoMeaningChangesNothing) {
    fillChart(chart);
    const std::string before = chart.GetSvg();
    EXPECT_FALSE(chart.SetChart(3));
    EXPECT_FALSE(chart.SetChart(ChartForm::Bars, 9));
    for (const int axis : {-2, 2})
        EXPECT_FALSE(chart.SetAxisTitle(axis, L"t") || chart.SetAxisLog(axis, 1));
    for (const double size : {0.0, -3.0, 1e9, kNan})
        EXPECT_FALSE(chart.SetAxisTitleSize(ChartAxis::X, size) || chart.SetSeriesLineWidth(0, size)) << size;
    const std::pair<double, double> ranges[] = {{1, 1},      {2, 1},         {kNan, 1},  {0, kInfinity},
                                                {-1e301, 1}, {1, 1 + 1e-15}, {0, 5e-324}};
    for (const auto& [lower, upper] : ranges)
        EXPECT_FALSE(chart.SetAxisRange(ChartAxis::Y, lower, upper)) << lower << " " << upper;
    EXPECT_FALSE(chart.SetAxisDivision(ChartAxis::X, -1));
    for (const int series : {-1, 2, 1 << 30})
        EXPECT_FALSE(chart.SetSeriesName(series, L"n") || chart.SetSeriesColor(series, 0) ||
                     chart.SetSeriesMarker(series, ChartMarker::Dot) ||
                     chart.SetSeriesLineDash(series, ChartDash::Dot))
            << series;
    for (const int series : {-1, 3, 1 << 30})
        EXPECT_FALSE(chart.AddData(series, 1.0, 2.0) || chart.AddData(series, L"label", 2.0)) << series;
    EXPECT_FALSE(chart.SetSeriesMarker(0, 1) || chart.SetSeriesLineDash(0, 1));
    EXPECT_FALSE(chart.ShowContextMenu(7, 1) || chart.SetZoom(1, 8));
    const double x[] = {1.0, 2.0};
    EXPECT_FALSE(chart.AddData(0, x, std::span(x, 1)));
    EXPECT_EQ(chart.GetSvg(), before);

    MChartCtrl none;
    EXPECT_FALSE(none.SetTitle(L"t") || none.AddData(0, 1, 1) || none.Redraw() || none.GetSeriesCount());
    EXPECT_EQ(none.GetSvg(), "");
}

TEST_F(ChartFixture, ASmallLineChartAsItIsWritten) {
    chart.MoveWindow(0, 0, 200, 150);
    chart.ShowLegend(0);
    chart.AddData(0, 0.0, 1.0);
    chart.AddData(0, 5.0, 2.0);
    chart.AddData(0, 10.0, 1.5);
    chart.SetSeriesMarker(0, ChartMarker::Square);
    const std::string svg = chart.GetSvg();
    keepGolden("host/line-chart.svg", svg);
    // The plot is so many pixels wide and high, and shows 0 to 10 and 1 to 2.
    double left = 0, top = 0, width = 0, height = 0;
    ASSERT_EQ(std::sscanf(svg.c_str() + svg.find("<clipPath"),
                          "<clipPath id=\"plot\"><rect x=\"%lf\" y=\"%lf\" width=\"%lf\" height=\"%lf", &left,
                          &top, &width, &height),
              4);
    double at[6] = {};
    ASSERT_EQ(std::sscanf(svg.c_str() + svg.find("<path d="), "<path d=\"M%lf %lf L%lf %lf L%lf %lf", at,
                          at + 1, at + 2, at + 3, at + 4, at + 5),
              6);
    const double expected[] = {left, top + height, left + width / 2, top, left + width, top + height / 2};
    for (int i = 0; i < 6; ++i)
        EXPECT_NEAR(at[i], expected[i], 0.02) << i;
    EXPECT_EQ(count(svg, "<polygon"), 3u);
    EXPECT_EQ(count(svg, " L"), 2u);
    for (const char* label : {">0</text>", ">5</text>", ">10</text>", ">1</text>", ">2</text>"})
        EXPECT_NE(svg.find(label), std::string::npos) << label << "\n" << svg;
}

TEST_F(ChartFixture, RangesAndTicks) {
    struct Row {
        std::vector<double> values;
        bool log;
        int divisions;
        ChartRange range;
        std::vector<double> major;
    };
    const Row rows[] = {
        {{}, false, 0, {0, 1}, {0, 0.2, 0.4, 0.6, 0.8, 1}},
        {{kNan, kInfinity}, false, 0, {0, 1}, {0, 0.2, 0.4, 0.6, 0.8, 1}},
        {{3}, false, 0, {2.7, 3.3}, {2.7, 2.8, 2.9, 3, 3.1, 3.2, 3.3}},
        {{0, 0}, false, 0, {-0.5, 0.5}, {-0.4, -0.2, 0, 0.2, 0.4}},
        {{0.2, 9.7}, false, 0, {0, 10}, {0, 2, 4, 6, 8, 10}},
        {{0.2, 9.7}, false, 4, {0, 20}, {0, 5, 10, 15, 20}},
        {{-1, 1}, false, 1, {-1, 1}, {-1, 1}},
        {{0.2, 97, -4, 0}, true, 0, {0.1, 100}, {0.1, 1, 10, 100}},
        {{-4, 0}, true, 0, {1, 10}, {1, 10}},
        {{7}, true, 0, {1, 10}, {1, 10}},
    };
    for (const Row& row : rows) {
        chart.RemoveDataAll();
        chart.SetAxisLog(ChartAxis::Y, row.log);
        chart.SetAxisDivision(ChartAxis::Y, row.divisions);
        for (const double value : row.values)
            chart.AddData(0, 0.0, value);
        const ChartState& state = *findChart(chart.m_hWnd);
        const ChartRange range = shownRange(state, ChartAxis::Y);
        const std::string name = testing::PrintToString(row.values) + (row.log ? " log" : "");
        EXPECT_NEAR(range.lower, row.range.lower, 1e-12) << name;
        EXPECT_NEAR(range.upper, row.range.upper, 1e-12) << name;
        const ChartTicks ticks = chartTicks(state, ChartAxis::Y, range, 240, 16);
        ASSERT_EQ(ticks.major.size(), row.major.size()) << name << testing::PrintToString(ticks.major);
        for (std::size_t i = 0; i < row.major.size(); ++i)
            EXPECT_NEAR(ticks.major[i], row.major[i], 1e-12) << name;
        EXPECT_EQ(ticks.labels.size(), ticks.major.size()) << name;
    }
}

TEST_F(ChartFixture, OddDataNeverBreaksThePicture) {
    const double odd[] = {kNan,  kInfinity, -kInfinity, 0.0,  -0.0,   5e-324, 1e-310, 1e300,    -1e300,
                          1e308, -1e308,    1.0,        -1.0, 1e-300, 3.0,    3.0,    1 + 1e-15};
    const char* const bad[] = {"nan", "inf", "e+", "e-"};
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    for (int round = 0; round < 400; ++round) {
        chart.RemoveDataAll();
        chart.SetChart(round % 2 + 1, round / 2 % 2 + 1, 1, round / 4 % 2);
        chart.SetAxisLog(ChartAxis::X, round / 8 % 2);
        chart.SetAxisLog(ChartAxis::Y, round / 16 % 2);
        chart.SetAxisDivision(ChartAxis::Both, round % 3 ? 0 : round);
        chart.EnableMarker(1);
        chart.ShowMinorGridLine(1);
        chart.SetAxisDataFormat(ChartAxis::Both, L"."); // keeps numbers of labels out
        for (int i = static_cast<int>(random.below(6)); i-- > 0;)
            chart.AddData(static_cast<int>(random.below(2)), odd[random.below(std::size(odd))],
                          odd[random.below(std::size(odd))]);
        const std::string svg = chart.GetSvg();
        for (const char* word : bad)
            EXPECT_EQ(svg.find(word + std::string("\"")), std::string::npos) << "round " << round << "\n"
                                                                             << svg;
        EXPECT_EQ(svg.find("nan"), std::string::npos) << "round " << round;
        EXPECT_LT(svg.size(), 200000u) << "round " << round;
        EXPECT_FALSE(HasFailure()) << "round " << round;
        if (HasFailure()) return;
    }
}

TEST_F(ChartFixture, ALineBreaksWhereAValueIsMissing) {
    const double values[] = {kNan, 1, 2, kNan, kInfinity, 3, 1e301, 2, 1, kNan};
    for (int i = 0; i < 10; ++i)
        chart.AddData(0, i, values[i]);
    const ChartState& state = *findChart(chart.m_hWnd);
    const auto points = linePoints(state.series[0], chartView(state, 0, 0, 1000, 100));
    EXPECT_EQ(points, (std::vector<std::size_t>{1, 2, kChartBreak, 5, kChartBreak, 7, 8}));
    chart.ShowLegend(0);
    EXPECT_EQ(count(chart.GetSvg(), " L"), 2u);
}

TEST_F(ChartFixture, ManyPointsBecomeAsManyAsThePixelsNeed) {
    std::vector<double> x, y;
    for (int i = 0; i < 200000; ++i) {
        x.push_back(i);
        y.push_back(std::sin(i * 0.01) + (i == 123456 ? 40.0 : 0.0));
    }
    chart.AddData(0, x, y);
    chart.EnableMarker(1);
    chart.ShowToolTip(1);
    const ChartState& state = *findChart(chart.m_hWnd);
    const auto points = linePoints(state.series[0], chartView(state, 0, 0, 300, 200));
    EXPECT_LE(points.size(), 4 * 301u);
    EXPECT_NE(std::ranges::find(points, 123456u), points.end()) << "the peak must stay";
    EXPECT_LT(chart.GetSvg().size(), 1000000u);

    chart.SetChart(ChartForm::Bars);
    const auto bars = chartBars(state, chartView(state, 0, 0, 300, 200));
    EXPECT_LE(bars.size(), 2 * 302u);
    EXPECT_NE(std::ranges::find(bars, 123456u, &ChartBar::point), bars.end());
}

TEST_F(ChartFixture, AFarPointKeepsTheSlopeOfItsLine) {
    // Through (0, 0) and (1e9, 1e9), seen from 0 to 10: the diagonal of the plot.
    chart.AddData(0, 0.0, 0.0);
    chart.AddData(0, 1e9, 1e9);
    chart.SetAxisRange(ChartAxis::Both, 0, 10);
    chart.ShowLegend(0);
    const std::string svg = chart.GetSvg();
    const std::string path = svg.substr(svg.find("<path d=\"M") + 10);
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    ASSERT_EQ(std::sscanf(path.c_str(), "%lf %lf L%lf %lf", &x1, &y1, &x2, &y2), 4) << path;
    const std::string plot = svg.substr(svg.find("<clipPath"));
    double width = 0, height = 0;
    ASSERT_EQ(
        std::sscanf(plot.c_str() + plot.find("width=\""), "width=\"%lf\" height=\"%lf", &width, &height), 2);
    EXPECT_NEAR((y1 - y2) / (x2 - x1), height / width, 1e-4);
}

TEST_F(ChartFixture, ZoomOfTheUserStaysWithinWhatIsAllowed) {
    fillChart(chart);
    const HWND window = chart.m_hWnd;
    const ChartRange x{2, 3}, y{5, 6};
    EXPECT_FALSE(zoomChart(window, x, y)) << "no zoom was allowed";
    chart.SetZoom(1, ChartZoom::X);
    EXPECT_TRUE(zoomChart(window, x, y));
    EXPECT_EQ(shownRange(*findChart(window), ChartAxis::X), x);
    EXPECT_NE(shownRange(*findChart(window), ChartAxis::Y), y);
    double lower = 0, upper = 0;
    EXPECT_TRUE(chart.GetAxisRange(ChartAxis::X, lower, upper));
    EXPECT_EQ(ChartRange({lower, upper}), x);
    EXPECT_FALSE(zoomChart(window, {3, 2}, y));
    EXPECT_TRUE(resetChartZoom(window));
    EXPECT_FALSE(resetChartZoom(window));
    EXPECT_FALSE(zoomChart(nullptr, x, y));
}

TEST_F(ChartFixture, AScreenIsToldByRedrawOfWhatIsDirty) {
    struct Port : framework::DesktopPort {
        int told = 0;
        void WindowChanged(HWND, unsigned what) override { told += what == framework::change::kContent; }
        void RunModalLoop(HWND) override {}
        int ShowMessageBox(HWND, const std::wstring&, const std::wstring&, unsigned) override { return 0; }
    } port;
    auto* before = framework::setDesktop(&port);
    chart.AddData(0, 1.0, 2.0);
    EXPECT_FALSE(chart.Redraw()) << "data are not dirty by themselves";
    chart.SetDirty();
    EXPECT_EQ(port.told, 0);
    EXPECT_TRUE(chart.Redraw());
    EXPECT_FALSE(chart.Redraw());
    chart.SetTitle(L"t");
    EXPECT_TRUE(chart.Redraw());
    EXPECT_EQ(port.told, 2);
    framework::setDesktop(before);
}

TEST_F(ChartFixture, BarsByLabelStandInTheirCategory) {
    chart.SetChart(2, 1, 1, 1);
    chart.AddData(0, L"Axis x", 0.5);
    chart.AddData(1, L"Axis x", -0.25);
    chart.ShowLegend(0);
    const std::string svg = chart.GetSvg();
    EXPECT_EQ(count(svg, ">Axis x</text>"), 1u);
    EXPECT_EQ(count(svg, "stroke=\"#404040\" stroke-width"), 2u) << svg;
    EXPECT_EQ(chart.GetSeriesCount(), 2);
    chart.RemoveDataAll();
    EXPECT_EQ(chart.GetSeriesCount(), 0);
    EXPECT_EQ(count(chart.GetSvg(), ">Axis x</text>"), 0u);
}

TEST_F(ChartFixture, BarsStandBesideOrOnEachOther) {
    // At x = 1 the values 2, -1 and 3, at x = 3 only 4: places are 1.6 wide.
    for (const auto& [series, x, y] : {std::tuple{0, 1, 2}, {0, 3, 4}, {1, 1, -1}, {2, 1, 3}})
        chart.AddData(series, x, y);
    const struct {
        int arrangement;
        bool fromZero, log;
        ChartRange range;
        std::string bars; ///< left, base and top of each
        double hitX, hitY;
        std::string hit; ///< series and point
    } rows[] = {
        {ChartBars::SideBySide,
         true,
         false,
         {-1, 4},
         "0.2,0,2 2.2,0,4 0.733333,0,-1 1.26667,0,3 ",
         1.5,
         2.5,
         "2 0"},
        {ChartBars::SideBySide,
         false,
         false,
         {-1, 4},
         "0.2,-1,2 2.2,-1,4 0.733333,-1,-1 1.26667,-1,3 ",
         1.5,
         3.5,
         ""},
        {ChartBars::SideBySide, true, true, {1, 10}, "0.2,1,2 2.2,1,4 1.26667,1,3 ", 0.4, 1.5, "0 0"},
        {ChartBars::Stacked, true, false, {-1, 5}, "0.2,0,2 2.2,0,4 0.2,0,-1 0.2,2,5 ", 1.5, 2.5, "2 0"},
        {ChartBars::Stacked, false, false, {-1, 5}, "0.2,0,2 2.2,0,4 0.2,0,-1 0.2,2,5 ", 1.5, -0.5, "1 0"},
        {ChartBars::Stacked, true, true, {1, 10}, "0.2,1,2 2.2,1,4 0.2,2,5 ", 1.5, 4.5, "2 0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bars);
        chart.SetChart(ChartForm::Bars, row.arrangement, 1, row.fromZero);
        chart.SetAxisLog(ChartAxis::Y, row.log);
        const ChartState& state = *findChart(chart.m_hWnd);
        const ChartView seen = chartView(state, 0, 0, 400, 300);
        EXPECT_EQ(seen.y, row.range);
        std::ostringstream bars;
        for (const ChartBar& bar : chartBars(state, seen))
            bars << bar.left << "," << bar.base << "," << bar.top << " ";
        EXPECT_EQ(bars.str(), row.bars);
        const ChartPixel at = pixelOf(seen, row.hitX, row.hitY);
        const auto hit = hitAt(state, seen, at.x, at.y, 1);
        EXPECT_EQ(hit ? std::to_string(hit->series) + " " + std::to_string(hit->point) : "", row.hit);
    }
}

TEST_F(ChartFixture, LabelsAtTheEndsOfAnAxisAreWhole) {
    for (const wchar_t* format : {L"%.4le", L"%.0f"}) {
        chart.RemoveDataAll();
        chart.ShowLegend(0);
        chart.AddData(0, 0.0, 1.0);
        chart.AddData(0, 0.3, 2.0);
        chart.SetAxisDataFormat(ChartAxis::X, format);
        const std::string svg = chart.GetSvg();
        const std::string anchor = "text-anchor=\"middle\">";
        std::size_t labels = 0;
        for (std::size_t at = svg.find(anchor); at != std::string::npos;
             at = svg.find(anchor, at + 1), ++labels) {
            const std::size_t begin = at + anchor.size();
            const std::wstring label = framework::fromUtf8(svg.substr(begin, svg.find('<', begin) - begin));
            const double x = std::stod(svg.substr(svg.rfind("<text x=\"", at) + 9));
            EXPECT_GE(x - framework::textWidth(label) / 2.0, -0.5) << framework::toUtf8(label);
            EXPECT_LE(x + framework::textWidth(label) / 2.0, 400.5) << framework::toUtf8(label);
        }
        EXPECT_GE(labels, 3u);
    }
}

TEST_F(ChartFixture, TextsAreSafeAndCut) {
    chart.SetTitle(std::wstring(100000, L'W') + L"<&\"\x1\xD55C>");
    chart.SetAxisTitle(ChartAxis::X, L"a<b & \x1\"c\"");
    chart.SetAxisDataFormat(ChartAxis::Y, L"%.900f%s");
    for (int s = 0; s < 60; ++s)
        chart.AddData(s, 1.0, s);
    chart.ShowSummary(1);
    chart.MoveWindow(0, 0, 900, 700);
    const std::string svg = chart.GetSvg();
    EXPECT_NE(svg.find("a&lt;b &amp; \xEF\xBF\xBD&quot;c&quot;"), std::string::npos);
    EXPECT_EQ(count(svg, "... and 40 more"), 1u) << "in the summary";
    EXPECT_EQ(count(svg, "... and "), 2u) << "also in the legend, which has room for fewer";
    EXPECT_EQ(svg.find('\x1'), std::string::npos);
}

TEST_F(ChartFixture, AnySizeOfWindow) {
    fillChart(chart);
    chart.SetTitle(L"title");
    chart.ShowSummary(1);
    for (const auto& [width, height] :
         {std::pair{0, 0}, {1, 1}, {30, 400}, {400, 30}, {60, 60}, {5000, 5000}}) {
        chart.MoveWindow(0, 0, width, height);
        const std::string svg = chart.GetSvg();
        EXPECT_EQ(svg.find("width=\"-"), std::string::npos) << width << "x" << height;
        EXPECT_EQ(svg.find("nan"), std::string::npos) << width << "x" << height;
        EXPECT_TRUE(svg.ends_with("</svg>\n"));
    }
}

TEST_F(ChartFixture, NearestPointAndTableOfValues) {
    fillChart(chart);
    chart.SetSeriesName(0, L"a,\"b\"");
    chart.SetAxisDataFormat(ChartAxis::Y, L"%.1f");
    const ChartState& state = *findChart(chart.m_hWnd);
    const ChartView seen = chartView(state, 0, 0, 100, 100);
    const ChartPixel at = pixelOf(seen, 3.0, 30.0);
    const auto hit = hitAt(state, seen, at.x + 3, at.y - 3, 6);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hitText(state, hit->series, hit->point), L"a,\"b\": 3, 30.0");
    EXPECT_FALSE(hitAt(state, seen, at.x + 5, at.y - 5, 6));

    chart.AddData(1, 0.1, kNan);
    const std::string table = chartTable(state);
    EXPECT_TRUE(table.starts_with("series,x,y\n\"a,\"\"b\"\"\",1,10\n")) << table;
    EXPECT_TRUE(table.ends_with("2,5,-14\n2,0.1,\n")) << table;
}

} // namespace
