// Drawing a chart of a million points on the desktop's screen, without a display: showing what changed,
// beside drawing the extremes of each column of pixels of the same data, in the same run.

#include "benchmarks/Stopwatch.h"
#include "host/chart/ChartCtrl.h"
#include "workbench/desktop/Appearance.h"
#include "workbench/desktop/ChartWidget.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

using namespace tqx::frx;
using workbench::desktop::ChartWidget;

constexpr std::size_t kPoints = 1'000'000;

template <class Work>
double milliseconds(Work&& work) {
    return median(9, work) * 1e3;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    workbench::desktop::setAppearance(application);
    ChartState state;
    ChartSeries& series = state.series.emplace_back();
    for (std::size_t i = 0; i < kPoints; ++i) {
        series.x.push_back(static_cast<double>(i));
        series.y.push_back(std::sin(static_cast<double>(i) * 1e-4) +
                           0.3 * std::sin(static_cast<double>(i) * 0.7));
    }
    ChartWidget widget([&] { return &state; });
    widget.resize(800, 500);
    widget.show();
    QImage image(800, 500, QImage::Format_ARGB32_Premultiplied);
    const ChartView seen = widget.view();

    const double extremes = milliseconds([&] {
        std::vector<QLineF> lines(static_cast<std::size_t>(seen.width) + 1, QLineF(0, 1e9, 0, -1e9));
        for (std::size_t i = 0; i < kPoints; ++i) {
            const double px = (series.x[i] - seen.x.lower) / (seen.x.upper - seen.x.lower) * seen.width;
            const double py = (series.y[i] - seen.y.lower) / (seen.y.upper - seen.y.lower) * seen.height;
            QLineF& column = lines[static_cast<std::size_t>(px)];
            column = QLineF(px, std::min(column.y1(), py), px, std::max(column.y2(), py));
        }
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::blue);
        painter.drawLines(lines.data(), static_cast<int>(lines.size()));
    });
    const double shown = milliseconds([&] {
        widget.showState();
        widget.render(&image);
    });
    const double again = milliseconds([&] { widget.render(&image); });
    std::printf("extremes of each column of 1,000,000 points, drawn bare: %.1f ms\n", extremes);
    std::printf("the chart taken over and drawn: %.1f ms, %.1f x; drawn again: %.1f ms, %.1f x\n", shown,
                shown / extremes, again, again / extremes);
}
