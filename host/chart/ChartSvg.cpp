#include "host/chart/ChartSvg.h"

#include "framework/text/Format.h"
#include "host/chart/ChartBars.h"
#include "host/chart/ChartHits.h"
#include "host/chart/ChartPoints.h"
#include "host/chart/SvgText.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace tqx::frx {
namespace {

constexpr double kText = 11.0; ///< pixels to the em, as in dialogs
constexpr double kTitle = 15.0;
constexpr double kLine = 16.0; ///< height of a line of text
constexpr double kGap = 8.0;
constexpr double kTick = 5.0;
constexpr double kMarker = 7.0; ///< width of a marker
constexpr double kLegendLine = 28.0;
constexpr double kLeastPlot = 8.0; ///< a smaller plot is not drawn
constexpr std::size_t kMostTips = 2000;
constexpr const char* kFonts = "NanumBarunGothic, 'Nanum Barun Gothic', 'Noto Sans CJK KR', 'Malgun Gothic', "
                               "'DejaVu Sans', sans-serif";

double pixelsOf(double points) {
    return points * 96.0 / 72.0;
}

std::string attribute(const char* name, double value) {
    return std::string(" ") + name + "=\"" + svgNumber(value) + "\"";
}

std::string line(double x1, double y1, double x2, double y2, const char* color) {
    return "<line" + attribute("x1", x1) + attribute("y1", y1) + attribute("x2", x2) + attribute("y2", y2) +
           " stroke=\"" + color + "\"/>\n";
}

std::string text(double x, double y, const std::wstring& words, const char* anchor = "start",
                 double size = kText, bool upwards = false) {
    if (words.empty()) return {};
    std::string written = "<text" + attribute("x", x) + attribute("y", y);
    if (size != kText) written += attribute("font-size", size);
    if (std::string(anchor) != "start") written += std::string(" text-anchor=\"") + anchor + "\"";
    if (upwards) written += " transform=\"rotate(-90 " + svgNumber(x) + " " + svgNumber(y) + ")\"";
    return written + ">" + svgEscaped(words) + "</text>\n";
}

/// The outline of a marker around a point.
std::string marker(unsigned kind, ChartPixel at, const std::string& color) {
    constexpr double r = kMarker / 2.0;
    if (kind == ChartMarker::Dot)
        return "<circle" + attribute("cx", at.x) + attribute("cy", at.y) + attribute("r", r) + " fill=\"" +
               color + "\"/>\n";
    const auto polygon = [&](std::initializer_list<ChartPixel> corners) {
        std::string points;
        for (const ChartPixel& c : corners)
            points +=
                (points.empty() ? "" : " ") + svgNumber(at.x + r * c.x) + "," + svgNumber(at.y + r * c.y);
        return "<polygon points=\"" + points + "\" fill=\"" + color + "\"/>\n";
    };
    switch (kind) {
    case ChartMarker::Square:
        return polygon({{-1, -1}, {1, -1}, {1, 1}, {-1, 1}});
    case ChartMarker::Triangle:
        return polygon({{0, -1}, {1, 1}, {-1, 1}});
    case ChartMarker::InvertTriangle:
        return polygon({{-1, -1}, {1, -1}, {0, 1}});
    case ChartMarker::Diamond:
        return polygon({{0, -1.2}, {1.2, 0}, {0, 1.2}, {-1.2, 0}});
    default:
        return {};
    }
}

std::string dashes(const ChartSeries& series, double width) {
    std::string lengths;
    for (const double length : dashPattern(series.dash))
        lengths += (lengths.empty() ? "" : ",") + svgNumber(length * std::max(1.0, width));
    return lengths.empty() ? lengths : " stroke-dasharray=\"" + lengths + "\"";
}

std::string stroke(const ChartSeries& series, const std::string& color) {
    return " fill=\"none\" stroke=\"" + color + "\"" + attribute("stroke-width", series.width) +
           dashes(series, series.width) + " stroke-linejoin=\"round\"";
}

/// The part of a line that lies in the box around the picture; false when none does.
bool clip(ChartPixel& from, ChartPixel& to) {
    constexpr double kBox = 20000.0;
    double begin = 0.0, end = 1.0;
    const double dx = to.x - from.x, dy = to.y - from.y;
    const auto cut = [&](double direction, double distance) {
        if (direction == 0.0) return distance >= 0.0;
        const double at = distance / direction;
        (direction < 0.0 ? begin : end) = direction < 0.0 ? std::max(begin, at) : std::min(end, at);
        return begin <= end;
    };
    if (!cut(-dx, from.x + kBox) || !cut(dx, kBox - from.x) || !cut(-dy, from.y + kBox) ||
        !cut(dy, kBox - from.y))
        return false;
    const ChartPixel start = from;
    if (begin > 0.0) from = {start.x + begin * dx, start.y + begin * dy};
    if (end < 1.0) to = {start.x + end * dx, start.y + end * dy};
    return true;
}

/// Writes one chart; parts in the order in which they lie on each other.
class Writer {
  public:
    Writer(const ChartState& state, int width, int height, const ChartTexts& texts)
        : state_(state)
        , texts_(texts)
        , width_(std::max(width, 1))
        , height_(std::max(height, 1)) {}

    std::string write() {
        begin();
        layOut();
        if (view_.width >= kLeastPlot && view_.height >= kLeastPlot) {
            writeGrid();
            writeSeries();
            writeAxes();
            writeTexts();
            if (state_.legend) writeLegend();
        }
        return out_ + "</svg>\n";
    }

  private:
    const ChartAxisState& axis(int which) const { return state_.axes[static_cast<std::size_t>(which)]; }
    double right() const { return view_.left + view_.width; }
    double bottom() const { return view_.top + view_.height; }

    void begin() {
        const std::string w = std::to_string(width_), h = std::to_string(height_);
        out_ = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + w + "\" height=\"" + h +
               "\" viewBox=\"0 0 " + w + " " + h + "\" font-family=\"" + kFonts + "\" font-size=\"" +
               svgNumber(kText) + "\"" + abilities() + ">\n";
        if (!state_.title.empty()) out_ += "<title>" + svgEscaped(state_.title) + "</title>\n";
        out_ += "<rect width=\"" + w + "\" height=\"" + h + "\" fill=\"#ffffff\"/>\n";
    }

    std::string abilities() const {
        std::string written =
            std::string(" zoomAndPan=\"") + (state_.zoomMode ? "magnify" : "disable") + "\"";
        if (state_.zoomMode) {
            const int axes = state_.zoomAxes & (ChartZoom::X | ChartZoom::Y);
            constexpr const char* kAxes[] = {"none", "x", "y", "x y"};
            written += std::string(" data-zoom-axes=\"") + kAxes[axes] + "\"";
        }
        if (state_.menu) {
            constexpr const char* kEntries[] = {"picture table", "picture", "table"};
            written += std::string(" data-menu=\"") + kEntries[state_.menuEntries] + "\"";
        }
        return written;
    }

    std::size_t listed() const { return std::min(state_.series.size(), kMostListedSeries); }
    std::size_t listedLines() const { return listed() + (state_.series.size() > listed() ? 1 : 0); }
    bool hasTips() const {
        std::size_t points = 0;
        for (const ChartSeries& series : state_.series)
            points += series.y.size();
        return state_.toolTip && points <= kMostTips;
    }

    /// Room for texts first; what is left is the plot.
    void layOut() {
        double top = kGap, low = height_ - kGap, left = kGap, most = width_ - 2.0 * kGap;
        if (!state_.title.empty()) top += kTitle + kGap;
        if (state_.summary) low -= kLine * static_cast<double>(listedLines());
        if (!axis(ChartAxis::X).title.empty()) low -= pixelsOf(axis(ChartAxis::X).titleSize) + kGap / 2.0;
        low -= kTick + kLine;
        top += kText / 2.0; // half of the uppermost label
        if (!axis(ChartAxis::Y).title.empty()) left += pixelsOf(axis(ChartAxis::Y).titleSize) + kGap / 2.0;
        if (state_.legend && !state_.series.empty()) most -= legendWidth() + kGap;
        view_ = chartView(state_, left, top, most - left, std::max(0.0, low - top));
        ticksY_ = chartTicks(state_, ChartAxis::Y, view_.y, view_.height, kLine);
        double widest = 0.0;
        for (const std::wstring& label : ticksY_.labels)
            widest = std::max(widest, chartTextWidth(label, kText));
        view_.left += widest + kTick + 3.0;
        view_.width = std::max(0.0, most + kGap - view_.left);
        ticksX_ = chartTicks(state_, ChartAxis::X, view_.x, view_.width, kLine);
        const ChartOverhang overhang = overhangOf(
            ticksX_, view_, width_, [](const std::wstring& label) { return chartTextWidth(label, kText); });
        view_.left += overhang.left;
        view_.width = std::max(0.0, view_.width - overhang.left - overhang.right);
        ticksX_ = chartTicks(state_, ChartAxis::X, view_.x, view_.width, kLine);
    }

    double legendWidth() const {
        double widest = 0.0;
        for (std::size_t s = 0; s < listed(); ++s)
            widest = std::max(widest, chartTextWidth(nameOf(state_, s), kText));
        return std::min(widest, width_ / 4.0) + kLegendLine + kGap;
    }

    void writeGrid() {
        const auto rule = [&](const std::vector<double>& places, int which, const char* color) {
            for (const double place : places) {
                const ChartPixel at = pixelOf(view_, which == ChartAxis::X ? place : view_.x.lower,
                                              which == ChartAxis::Y ? place : view_.y.lower);
                out_ += which == ChartAxis::X ? line(at.x, view_.top, at.x, bottom(), color)
                                              : line(view_.left, at.y, right(), at.y, color);
            }
        };
        for (const int which : {ChartAxis::X, ChartAxis::Y}) {
            const ChartTicks& ticks = which == ChartAxis::X ? ticksX_ : ticksY_;
            if (state_.minorGrid) rule(ticks.minor, which, "#eeeeee");
            if (state_.grid) rule(ticks.major, which, "#d0d0d0");
        }
    }

    void writeSeries() {
        out_ += "<clipPath id=\"plot\"><rect" + attribute("x", view_.left) + attribute("y", view_.top) +
                attribute("width", view_.width) + attribute("height", view_.height) + "/></clipPath>\n";
        out_ += "<g clip-path=\"url(#plot)\">\n";
        const bool bars = state_.form == ChartForm::Bars;
        if (bars) writeBars();
        for (std::size_t s = 0; s < state_.series.size() && !bars; ++s)
            writeLine(s);
        out_ += "</g>\n";
        // Beyond the plot a marker is not cut in two.
        for (std::size_t s = 0; s < state_.series.size() && !bars; ++s)
            writeMarkers(s);
        if (!bars && hasTips()) writeTips();
    }

    void writeLine(std::size_t s) {
        const ChartSeries& series = state_.series[s];
        std::string path;
        std::optional<ChartPixel> before;
        ChartPixel drawn{};
        bool isDrawing = false;
        for (const std::size_t point : linePoints(series, view_)) {
            if (point == kChartBreak) {
                before.reset();
                continue;
            }
            const ChartPixel at = pixelOf(view_, series.x[point], series.y[point]);
            ChartPixel from = before.value_or(at), to = at;
            const bool isSeen = before && clip(from, to);
            if (isSeen) {
                if (!isDrawing || from.x != drawn.x || from.y != drawn.y)
                    path += (path.empty() ? "M" : " M") + svgNumber(from.x) + " " + svgNumber(from.y);
                path += " L" + svgNumber(to.x) + " " + svgNumber(to.y);
                drawn = to;
            }
            isDrawing = isSeen;
            before = at;
        }
        if (!path.empty())
            out_ += "<path d=\"" + path + "\"" + stroke(series, svgColor(colorOf(state_, s))) + "/>\n";
    }

    void writeMarkers(std::size_t s) {
        const unsigned kind = markerOf(state_, s);
        if (kind == ChartMarker::Line) return;
        const ChartSeries& series = state_.series[s];
        const std::string color = svgColor(colorOf(state_, s));
        for (const std::size_t point : markerPoints(series, view_, kMarker / 2.0))
            out_ += marker(kind, pixelOf(view_, series.x[point], series.y[point]), color);
    }

    void writeTips() {
        for (std::size_t s = 0; s < state_.series.size(); ++s)
            for (const std::size_t point : markerPoints(state_.series[s], view_, kMarker)) {
                const ChartPixel at = pixelOf(view_, state_.series[s].x[point], state_.series[s].y[point]);
                out_ += "<circle" + attribute("cx", at.x) + attribute("cy", at.y) + attribute("r", kMarker) +
                        " fill-opacity=\"0\"><title>" + svgEscaped(hitText(state_, s, point)) +
                        "</title></circle>\n";
            }
    }

    void writeBars() {
        const bool tips = hasTips();
        for (const ChartBar& bar : chartBars(state_, view_)) {
            const ChartBox box = boxOf(view_, bar);
            out_ += "<rect" + attribute("x", box.left) + attribute("y", box.top) +
                    attribute("width", box.right - box.left) + attribute("height", box.bottom - box.top) +
                    barLook(bar.series);
            if (tips)
                out_ += "><title>" + svgEscaped(hitText(state_, bar.series, bar.point)) + "</title></rect>\n";
            else
                out_ += "/>\n";
        }
    }

    std::string barLook(std::size_t series) const {
        const ChartSeries& own = state_.series[series];
        return " fill=\"" + svgColor(colorOf(state_, series)) + "\" stroke=\"#404040\"" +
               attribute("stroke-width", outlineWidth(own)) + dashes(own, outlineWidth(own));
    }

    void writeAxes() {
        if (state_.frame)
            out_ += "<rect" + attribute("x", view_.left) + attribute("y", view_.top) +
                    attribute("width", view_.width) + attribute("height", view_.height) +
                    " fill=\"none\" stroke=\"#404040\"/>\n";
        else
            out_ += line(view_.left, view_.top, view_.left, bottom(), "#404040") +
                    line(view_.left, bottom(), right(), bottom(), "#404040");
        for (std::size_t i = 0; i < ticksX_.major.size(); ++i) {
            const double x = pixelOf(view_, ticksX_.major[i], view_.y.lower).x;
            out_ += line(x, bottom(), x, bottom() + kTick, "#404040");
            out_ += text(x, bottom() + kTick + kText, ticksX_.labels[i], "middle");
        }
        for (std::size_t i = 0; i < ticksY_.major.size(); ++i) {
            const double y = pixelOf(view_, view_.x.lower, ticksY_.major[i]).y;
            out_ += line(view_.left - kTick, y, view_.left, y, "#404040");
            out_ += text(view_.left - kTick - 3.0, y + 0.35 * kText, ticksY_.labels[i], "end");
        }
    }

    void writeTexts() {
        const double middle = view_.left + view_.width / 2.0;
        out_ += text(width_ / 2.0, kGap + kTitle, shortenedText(state_.title, width_ - 2.0 * kGap, kTitle),
                     "middle", kTitle);
        double y = bottom() + kTick + kLine;
        if (!axis(ChartAxis::X).title.empty()) {
            const double size = pixelsOf(axis(ChartAxis::X).titleSize);
            y += size;
            out_ +=
                text(middle, y, shortenedText(axis(ChartAxis::X).title, view_.width, size), "middle", size);
            y += kGap / 2.0;
        }
        if (!axis(ChartAxis::Y).title.empty()) {
            const double size = pixelsOf(axis(ChartAxis::Y).titleSize);
            out_ += text(kGap + 0.8 * size, view_.top + view_.height / 2.0,
                         shortenedText(axis(ChartAxis::Y).title, view_.height, size), "middle", size, true);
        }
        for (std::size_t s = 0; state_.summary && s < listed(); ++s, y += kLine)
            out_ += text(view_.left, y + kText,
                         shortenedText(summaryLine(state_, s, texts_), width_ - view_.left, kText));
        if (state_.summary && state_.series.size() > listed())
            out_ += text(view_.left, y + kText, moreSeries(state_, listed(), texts_));
    }

    void writeLegend() {
        const double left = right() + kGap;
        const double words = width_ - kGap - left - kLegendLine;
        double y = view_.top + kText / 2.0;
        const std::size_t shown = listedSeries(state_, view_.height / kLine);
        for (std::size_t s = 0; s < shown; ++s, y += kLine) {
            const std::string color = svgColor(colorOf(state_, s));
            const ChartPixel middle{left + kLegendLine / 2.0 - 3.0, y};
            if (state_.form == ChartForm::Bars)
                out_ += "<rect" + attribute("x", middle.x - kMarker) + attribute("y", y - kMarker / 2.0) +
                        attribute("width", 2.0 * kMarker) + attribute("height", kMarker) + " fill=\"" +
                        color + "\"/>\n";
            else
                out_ += "<path d=\"M" + svgNumber(left) + " " + svgNumber(y) + " L" +
                        svgNumber(left + kLegendLine - 6.0) + " " + svgNumber(y) + "\"" +
                        stroke(state_.series[s], color) + "/>\n" + marker(markerOf(state_, s), middle, color);
            out_ +=
                text(left + kLegendLine, y + 0.35 * kText, shortenedText(nameOf(state_, s), words, kText));
        }
        if (state_.series.size() > shown)
            out_ += text(left, y + 0.35 * kText, moreSeries(state_, shown, texts_));
    }

    const ChartState& state_;
    const ChartTexts& texts_;
    int width_;
    int height_;
    ChartView view_;
    ChartTicks ticksX_;
    ChartTicks ticksY_;
    std::string out_;
};

} // namespace

std::string chartSvg(const ChartState& state, int width, int height, const ChartTexts& texts) {
    return Writer(state, width, height, texts).write();
}

} // namespace tqx::frx
