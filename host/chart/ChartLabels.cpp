#include "host/chart/ChartLabels.h"

#include "framework/text/Format.h"
#include "framework/windows/dialogs/TextWidth.h"

#include <algorithm>
#include <cmath>

namespace tqx::frx {
namespace {

constexpr double kTableTextPixels = 11.0; ///< the size that framework::textWidth measures
constexpr std::size_t kLongestLabel = 40;

std::wstring categoryText(const ChartState& state, double position) {
    const double rounded = std::round(position);
    if (rounded < 0.0 || rounded >= static_cast<double>(state.categories.size())) return {};
    return state.categories[static_cast<std::size_t>(rounded)];
}

} // namespace

std::wstring axisText(const ChartState& state, int axis, double value) {
    if (axis == ChartAxis::X && hasCategories(state)) return categoryText(state, value);
    const std::wstring& format = state.axes[static_cast<std::size_t>(axis)].format;
    std::wstring text = framework::formatWide(format.empty() ? L"%g" : format, value);
    if (text.size() > kLongestLabel) text.resize(kLongestLabel);
    return text;
}

ChartOverhang overhangOf(const ChartTicks& ticks, const ChartView& view, double width,
                         const std::function<double(const std::wstring&)>& widthOf) {
    ChartOverhang overhang{0.0, 0.0};
    for (std::size_t i = 0; i < ticks.labels.size(); ++i) {
        const double middle = pixelOf(view, ticks.major[i], view.y.lower).x;
        const double half = 0.5 * widthOf(ticks.labels[i]);
        overhang.left = std::max(overhang.left, half - middle);
        overhang.right = std::max(overhang.right, middle + half - width);
    }
    // A small plot keeps its room.
    return overhang.left + overhang.right > view.width / 2.0 ? ChartOverhang{0.0, 0.0} : overhang;
}

double chartTextWidth(const std::wstring& text, double textPixels) {
    return framework::textWidth(text) * textPixels / kTableTextPixels;
}

std::wstring shortenedText(const std::wstring& text, double pixels, double textPixels) {
    if (chartTextWidth(text, textPixels) <= pixels) return text;
    // By halves: a text may be of any length.
    std::size_t fits = 0;
    std::size_t tooLong = std::min<std::size_t>(text.size(), 4096);
    while (tooLong - fits > 1) {
        const std::size_t middle = (fits + tooLong) / 2;
        (chartTextWidth(text.substr(0, middle) + L"...", textPixels) <= pixels ? fits : tooLong) = middle;
    }
    return fits == 0 ? std::wstring() : text.substr(0, fits) + L"...";
}

void thinLabels(ChartTicks& ticks, bool across, double pixels, double lineHeight) {
    constexpr double kGap = 8.0;
    if (ticks.labels.size() < 2) return;
    double size = lineHeight;
    if (across) {
        const double most = pixels / 2.0;
        for (std::wstring& label : ticks.labels) {
            label = shortenedText(label, most, kTableTextPixels);
            size = std::max(size, chartTextWidth(label, kTableTextPixels) + kGap);
        }
    }
    // The last tick stands where the axis ends, or a little before.
    const double distance = std::max(1.0, pixels) / static_cast<double>(ticks.labels.size());
    const auto every = static_cast<std::size_t>(std::ceil(std::clamp(size / distance, 1.0, 1e6)));
    for (std::size_t i = 0; i < ticks.labels.size(); ++i)
        if (i % every) ticks.labels[i].clear();
}

std::wstring summaryLine(const ChartState& state, std::size_t series, const ChartTexts& texts) {
    const ChartSeries& own = state.series[series];
    ChartRange extremes;
    std::size_t points = 0;
    for (std::size_t i = 0; i < own.y.size(); ++i) {
        if (!isDrawable(own.y[i], isLog(state, ChartAxis::Y)) ||
            !isDrawable(own.x[i], isLog(state, ChartAxis::X)))
            continue;
        extremes.lower = points ? std::min(extremes.lower, own.y[i]) : own.y[i];
        extremes.upper = points ? std::max(extremes.upper, own.y[i]) : own.y[i];
        ++points;
    }
    const auto text = [&](double value) {
        return points ? axisText(state, ChartAxis::Y, value) : std::wstring(L"-");
    };
    return framework::formatWide(texts.summary, nameOf(state, series), points, text(extremes.lower),
                                 text(extremes.upper));
}

std::size_t listedSeries(const ChartState& state, double lines) {
    const auto room = static_cast<std::size_t>(std::clamp(lines, 1.0, 1.0 + kMostListedSeries));
    const std::size_t count = state.series.size();
    return count <= std::min(room, kMostListedSeries) ? count : std::min(room - 1, kMostListedSeries);
}

std::wstring moreSeries(const ChartState& state, std::size_t listed, const ChartTexts& texts) {
    return framework::formatWide(texts.more, state.series.size() - listed);
}

} // namespace tqx::frx
