// A chart of a million points: adding them and writing the SVG picture, thinned to columns of pixels, beside
// a bare pass over the data that maps each point once, in the same run.

#include "benchmarks/Stopwatch.h"
#include "framework/windows/WinThread.h"
#include "host/HostServices.h"
#include "host/chart/ChartCtrl.h"
#include "host/chart/ChartSvg.h"

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

using namespace tqx::frx;

constexpr std::size_t kPoints = 1'000'000;

template <class Work>
double milliseconds(Work&& work) {
    return median(9, work) * 1e3;
}

} // namespace

int main() {
    std::vector<double> x(kPoints), y(kPoints);
    for (std::size_t i = 0; i < kPoints; ++i) {
        x[i] = static_cast<double>(i);
        y[i] = std::sin(static_cast<double>(i) * 1e-4) + 0.3 * std::sin(static_cast<double>(i) * 0.7);
    }
    CWnd frame;
    frame.CreateEx(0, nullptr, L"frame", 0, {0, 0, 800, 600}, nullptr, 0);
    MChartCtrl chart;
    chart.Create({0, 0, 800, 500}, &frame, 1);

    std::vector<int> pixels(2 * kPoints);
    const double pass = milliseconds([&] {
        for (std::size_t i = 0; i < kPoints; ++i) {
            pixels[2 * i] = static_cast<int>(x[i] * (700.0 / kPoints));
            pixels[2 * i + 1] = static_cast<int>(250.0 - y[i] * 190.0);
        }
    });
    const double addOne = milliseconds([&] {
        chart.RemoveDataAll();
        for (std::size_t i = 0; i < kPoints; ++i)
            chart.AddData(0, x[i], y[i]);
    });
    const double addAll = milliseconds([&] {
        chart.RemoveDataAll();
        chart.AddData(0, x, y);
    });
    std::size_t bytes = 0;
    const double line = milliseconds([&] { bytes = chartSvg(*findChart(chart.m_hWnd), 800, 500).size(); });
    chart.EnableMarker(1);
    std::size_t markedBytes = 0;
    const double marked =
        milliseconds([&] { markedBytes = chartSvg(*findChart(chart.m_hWnd), 800, 500).size(); });

    std::printf("a bare pass over 1,000,000 points: %.2f ms\n", pass);
    std::printf("adding them one by one: %.1f ms, %.1f x; at once: %.1f ms, %.1f x\n", addOne, addOne / pass,
                addAll, addAll / pass);
    std::printf("SVG of the line: %.1f ms, %.1f x, %zu bytes; with markers: %.1f ms, %.1f x, %zu bytes\n",
                line, line / pass, bytes, marked, marked / pass, markedBytes);
    chart.DestroyWindow();
    frame.DestroyWindow();
}
