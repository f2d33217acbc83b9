#pragma once

#include "host/chart/ChartCtrl.h"

#include <functional>
#include <vector>

/// A setter of the chart with a value that is not the one before.
struct ChartSetter {
    const char* name;
    std::function<int(tqx::frx::MChartCtrl&)> set;
    std::function<void(tqx::frx::MChartCtrl&)> before = [](tqx::frx::MChartCtrl&) {};
};

/// Two series of five points, the second one below zero at times.
inline void fillChart(tqx::frx::MChartCtrl& chart) {
    for (int i = 0; i < 5; ++i) {
        chart.AddData(0, 1.0 + i, 10.0 * (i + 1));
        chart.AddData(1, 1.0 + i, 7.0 * (2 - i));
    }
}

/// One row for each setter. Where a setter needs another one first, it is in `before`.
inline std::vector<ChartSetter> chartSetters() {
    using namespace tqx::frx;
    using Chart = MChartCtrl;
    const auto bars = [](Chart& c) { c.SetChart(ChartForm::Bars); };
    const auto positive = [](Chart& c) {
        c.RemoveDataAll();
        c.AddData(0, 1, 1);
        c.AddData(0, 3, 50);
        c.AddData(0, 200, 1000);
    };
    return {
        {"SetChart form", [](Chart& c) { return c.SetChart(ChartForm::Bars); }},
        {"SetChart arrangement", [](Chart& c) { return c.SetChart(ChartForm::Bars, ChartBars::Stacked); },
         bars},
        {"SetChart frame", [](Chart& c) { return c.SetChart(ChartForm::Lines, ChartBars::SideBySide, 0); }},
        {"SetChart from zero",
         [](Chart& c) { return c.SetChart(ChartForm::Bars, ChartBars::SideBySide, 1, 0); }, bars},
        {"SetTitle", [](Chart& c) { return c.SetTitle(L"Factor"); }},
        {"SetAxisTitle x", [](Chart& c) { return c.SetAxisTitle(ChartAxis::X, L"Iterations"); }},
        {"SetAxisTitle y", [](Chart& c) { return c.SetAxisTitle(ChartAxis::Y, L"Safety"); }},
        {"SetAxisTitleSize", [](Chart& c) { return c.SetAxisTitleSize(ChartAxis::Both, 14.0); },
         [](Chart& c) { c.SetAxisTitle(ChartAxis::X, L"Iterations"); }},
        {"SetAxisDataFormat x", [](Chart& c) { return c.SetAxisDataFormat(ChartAxis::X, L"%.1f"); }},
        {"SetAxisDataFormat y", [](Chart& c) { return c.SetAxisDataFormat(ChartAxis::Y, L"%.4le"); }},
        {"SetAxisRange x", [](Chart& c) { return c.SetAxisRange(ChartAxis::X, 0, 20); }},
        {"SetAxisRange y", [](Chart& c) { return c.SetAxisRange(ChartAxis::Y, -30, 20); }},
        {"ResetAxisRange", [](Chart& c) { return c.ResetAxisRange(ChartAxis::Y); },
         [](Chart& c) { c.SetAxisRange(ChartAxis::Y, -30, 20); }},
        {"SetAxisDivision x", [](Chart& c) { return c.SetAxisDivision(ChartAxis::X, 3); }},
        {"SetAxisDivision y", [](Chart& c) { return c.SetAxisDivision(ChartAxis::Y, 9); }},
        {"SetAxisLog x", [](Chart& c) { return c.SetAxisLog(ChartAxis::X, 1); }, positive},
        {"SetAxisLog y", [](Chart& c) { return c.SetAxisLog(ChartAxis::Y, 1); }, positive},
        {"SetAxisDivision log", [](Chart& c) { return c.SetAxisDivision(ChartAxis::Y, 2); },
         [=](Chart& c) {
             positive(c);
             c.AddData(0, 1, 1e-4);
             c.SetAxisLog(ChartAxis::Y, 1);
         }},
        {"AddData point", [](Chart& c) { return c.AddData(0, 6.0, 30.0); }},
        {"AddData new series", [](Chart& c) { return c.AddData(2, 2.0, 3.0) + c.AddData(2, 3.0, 8.0); }},
        {"AddData label", [](Chart& c) { return c.AddData(0, L"Axis x", 0.5); }, bars},
        {"AddData points",
         [](Chart& c) {
             const double x[] = {6, 7}, y[] = {20, 30};
             return c.AddData(1, x, y);
         }},
        {"RemoveDataAll", [](Chart& c) { return c.RemoveDataAll(); }},
        {"SetSeriesName", [](Chart& c) { return c.SetSeriesName(1, L"second"); }},
        {"SetSeriesMarker", [](Chart& c) { return c.SetSeriesMarker(0, ChartMarker::Diamond); }},
        {"SetSeriesLineDash", [](Chart& c) { return c.SetSeriesLineDash(0, ChartDash::DashDot); }},
        {"SetSeriesLineWidth", [](Chart& c) { return c.SetSeriesLineWidth(0, 4.0); }},
        {"SetSeriesLineDash of bars", [](Chart& c) { return c.SetSeriesLineDash(0, ChartDash::Dash); },
         [=](Chart& c) {
             bars(c);
             c.SetSeriesLineWidth(0, 4.0);
         }},
        {"SetSeriesLineWidth of bars", [](Chart& c) { return c.SetSeriesLineWidth(0, 4.0); }, bars},
        {"SetSeriesColor", [](Chart& c) { return c.SetSeriesColor(0, 0x3F4BE4); }},
        {"EnableMarker", [](Chart& c) { return c.EnableMarker(1); }},
        {"ShowLegend", [](Chart& c) { return c.ShowLegend(0); }},
        {"ShowGridLine", [](Chart& c) { return c.ShowGridLine(0); }},
        {"ShowMinorGridLine", [](Chart& c) { return c.ShowMinorGridLine(1); }},
        {"ShowSummary", [](Chart& c) { return c.ShowSummary(1); }},
    };
}

/// Those that change what the user can do; the picture of a chart at rest is the same.
inline std::vector<ChartSetter> chartAbilities() {
    using namespace tqx::frx;
    using Chart = MChartCtrl;
    return {
        {"ShowToolTip", [](Chart& c) { return c.ShowToolTip(1); }},
        {"ShowContextMenu", [](Chart& c) { return c.ShowContextMenu(1); }},
        {"ShowContextMenu entries", [](Chart& c) { return c.ShowContextMenu(ChartMenu::Table, 1); },
         [](Chart& c) { c.ShowContextMenu(1); }},
        {"SetZoom", [](Chart& c) { return c.SetZoom(1, 3); }},
        {"SetZoom axes", [](Chart& c) { return c.SetZoom(1, ChartZoom::X); },
         [](Chart& c) { c.SetZoom(1, 3); }},
    };
}
