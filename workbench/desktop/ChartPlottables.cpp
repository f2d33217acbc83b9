#include "workbench/desktop/ChartPlottables.h"

#include "host/chart/ChartBars.h"
#include "host/chart/ChartLabels.h"
#include "host/chart/ChartPoints.h"
#include "workbench/desktop/ControlView.h"

#include <algorithm>
#include <map>

namespace workbench::desktop {
namespace {

using namespace tqx::frx;

constexpr double kMarker = 7.0;

QColor colorOfSeries(const ChartState& state, std::size_t series) {
    const std::uint32_t color = colorOf(state, series);
    return QColor(color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
}

QPen penOf(const QColor& color, unsigned dash, double width) {
    QPen pen(color, width);
    pen.setJoinStyle(Qt::RoundJoin);
    QList<qreal> pattern;
    for (const double length : dashPattern(dash)) // the toolkit's are in widths of the line
        pattern << length * std::max(1.0, width) / width;
    if (pattern.isEmpty()) return pen;
    pen.setCapStyle(Qt::FlatCap);
    pen.setDashPattern(pattern);
    return pen;
}

QString nameInLegend(const QCustomPlot& plot, const ChartState& state, std::size_t series) {
    return qText(shortenedText(nameOf(state, series), plot.width() / 4.0, kChartText));
}

QCPScatterStyle markerStyle(const ChartState& state, std::size_t series) {
    using Style = QCPScatterStyle;
    static const std::map<unsigned, Style::ScatterShape> shapes = {
        {ChartMarker::Dot, Style::ssCircle},        {ChartMarker::Square, Style::ssSquare},
        {ChartMarker::Triangle, Style::ssTriangle}, {ChartMarker::InvertTriangle, Style::ssTriangleInverted},
        {ChartMarker::Diamond, Style::ssDiamond},
    };
    const auto shape = shapes.find(markerOf(state, series));
    if (shape == shapes.end()) return {};
    const QColor color = colorOfSeries(state, series);
    return {shape->second, QPen(color, 0.0), color, kMarker};
}

/// A line whose entry in the legend also has the marker, which stands in a curve of its own.
class LineCurve final : public QCPCurve {
  public:
    LineCurve(QCPAxis* x, QCPAxis* y, QCPScatterStyle marker)
        : QCPCurve(x, y)
        , marker_(std::move(marker)) {}

  protected:
    void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override {
        QCPCurve::drawLegendIcon(painter, rect);
        if (marker_.isNone()) return;
        applyScattersAntialiasingHint(painter);
        marker_.applyTo(painter, pen());
        marker_.drawShape(painter, rect.center());
    }

  private:
    QCPScatterStyle marker_;
};

/// Markers, whole also where their point stands on the edge of the plot.
class MarkerCurve final : public QCPCurve {
  public:
    using QCPCurve::QCPCurve;

  protected:
    QRect clipRect() const override {
        constexpr int kHalf = 5;
        return QCPCurve::clipRect().adjusted(-kHalf, -kHalf, kHalf, kHalf);
    }
};

/// Bars of one series, drawn where the pieces of the SVG picture stand.
class BarSeries final : public QCPAbstractPlottable {
  public:
    BarSeries(QCPAxis* x, QCPAxis* y, std::vector<ChartBar> bars)
        : QCPAbstractPlottable(x, y)
        , bars_(std::move(bars)) {}

    // The state of the chart has its ranges, and its mouse.
    double selectTest(const QPointF&, bool, QVariant*) const override { return -1.0; }
    QCPRange getKeyRange(bool& found, QCP::SignDomain) const override { return noRange(found); }
    QCPRange getValueRange(bool& found, QCP::SignDomain, const QCPRange&) const override {
        return noRange(found);
    }

  protected:
    void draw(QCPPainter* painter) override {
        applyDefaultAntialiasingHint(painter);
        painter->setPen(pen());
        painter->setBrush(brush());
        const QRect plot = keyAxis()->axisRect()->rect();
        const ChartView view = viewOf(*keyAxis(), *valueAxis(), plot);
        for (const ChartBar& bar : bars_) {
            const ChartBox box = boxOf(view, bar);
            painter->drawRect(QRectF(QPointF(box.left, box.top), QPointF(box.right, box.bottom)));
        }
    }
    void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override {
        applyDefaultAntialiasingHint(painter);
        painter->setPen(Qt::NoPen);
        painter->setBrush(brush());
        const QPointF half(kMarker, kMarker / 2.0);
        painter->drawRect(QRectF(rect.center() - half, rect.center() + half));
    }

  private:
    static QCPRange noRange(bool& found) {
        found = false;
        return {};
    }
    static ChartView viewOf(const QCPAxis& x, const QCPAxis& y, const QRect& plot) {
        return {double(plot.left()),
                double(plot.top()),
                double(plot.width()),
                double(plot.height()),
                {x.range().lower, x.range().upper},
                {y.range().lower, y.range().upper},
                x.scaleType() == QCPAxis::stLogarithmic,
                y.scaleType() == QCPAxis::stLogarithmic};
    }

    std::vector<ChartBar> bars_;
};

void addLine(QCustomPlot& plot, const ChartState& state, std::size_t series, const ChartView& view) {
    const ChartSeries& own = state.series[series];
    const QCPScatterStyle marker = markerStyle(state, series);
    auto* line = new LineCurve(plot.xAxis, plot.yAxis, marker);
    line->setName(nameInLegend(plot, state, series));
    line->setPen(penOf(colorOfSeries(state, series), own.dash, own.width));
    QVector<double> x, y;
    for (const std::size_t point : linePoints(own, view)) {
        x.append(point == kChartBreak ? qQNaN() : own.x[point]);
        y.append(point == kChartBreak ? qQNaN() : own.y[point]);
    }
    line->setData(x, y);
    if (marker.isNone()) return;
    auto* markers = new MarkerCurve(plot.xAxis, plot.yAxis);
    markers->setLineStyle(QCPCurve::lsNone);
    markers->setScatterStyle(marker);
    x.clear();
    y.clear();
    for (const std::size_t point : markerPoints(own, view, kMarker / 2.0)) {
        x.append(own.x[point]);
        y.append(own.y[point]);
    }
    markers->setData(x, y);
}

} // namespace

void addLines(QCustomPlot& plot, const ChartState& state, const ChartView& view) {
    for (std::size_t s = 0; s < state.series.size(); ++s)
        addLine(plot, state, s, view);
}

void addBars(QCustomPlot& plot, const ChartState& state, const ChartView& view) {
    const QColor kOutline(0x40, 0x40, 0x40);
    std::vector<std::vector<ChartBar>> bars(state.series.size());
    for (const ChartBar& bar : chartBars(state, view))
        bars[bar.series].push_back(bar);
    for (std::size_t s = 0; s < bars.size(); ++s) {
        auto* series = new BarSeries(plot.xAxis, plot.yAxis, std::move(bars[s]));
        series->setName(nameInLegend(plot, state, s));
        series->setPen(penOf(kOutline, state.series[s].dash, outlineWidth(state.series[s])));
        series->setBrush(colorOfSeries(state, s));
    }
}

} // namespace workbench::desktop
