#include "host/chart/ChartRange.h"

#include "host/chart/ChartLabels.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tqx::frx {
namespace {

constexpr double kBarShare = 0.8;
/// Ends that are closer than that, relative to their magnitude, are one.
constexpr double kLeastSpan = 1e-12;
constexpr double kSmallestSpan = 1e-200;
constexpr int kUsualDivisions = 10;

/// Nothing drawable: lower > upper.
constexpr ChartRange kNothing{std::numeric_limits<double>::infinity(),
                              -std::numeric_limits<double>::infinity()};

void include(ChartRange& range, double value) {
    range.lower = std::min(range.lower, value);
    range.upper = std::max(range.upper, value);
}

/// Calls visit(x, y) for each point that can be drawn.
template <class Visit>
void forEachDrawable(const ChartState& state, const Visit& visit) {
    const bool logX = isLog(state, ChartAxis::X), logY = isLog(state, ChartAxis::Y);
    for (const ChartSeries& series : state.series)
        for (std::size_t i = 0; i < series.y.size(); ++i)
            if (isDrawable(series.x[i], logX) && isDrawable(series.y[i], logY))
                visit(series.x[i], series.y[i]);
}

/// The ends of bars that stand on each other, negative ones below zero.
ChartRange stackedRange(const ChartState& state) {
    std::unordered_map<double, double> above, below;
    ChartRange range = kNothing;
    forEachDrawable(state, [&](double x, double y) {
        const double end = (y < 0.0 ? below : above)[x] += y;
        include(range, std::clamp(end, -kLargestChartValue, kLargestChartValue));
    });
    return range;
}

ChartRange dataRange(const ChartState& state, int axis) {
    const bool bars = state.form == ChartForm::Bars && axis == ChartAxis::Y;
    const bool stacked = bars && state.arrangement == ChartBars::Stacked;
    ChartRange range = kNothing;
    if (stacked)
        range = stackedRange(state);
    else
        forEachDrawable(state, [&](double x, double y) { include(range, axis == ChartAxis::X ? x : y); });
    const bool hasZero = bars && (stacked || state.fromZero) && !isLog(state, axis);
    if (hasZero && range.lower <= range.upper) include(range, 0.0);
    return range;
}

double roundStep(double least) {
    const double decade = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * decade >= least * (1.0 - 1e-9)) return factor * decade;
    return 10.0 * decade;
}

/// The least round step whose multiples cover the range in so many steps.
double coveringStep(const ChartRange& range, int divisions) {
    double step = roundStep((range.upper - range.lower) / divisions);
    while (std::floor(range.lower / step) * step + divisions * step < range.upper - 1e-9 * step)
        step = roundStep(step * 1.5);
    return step;
}

ChartRange widened(ChartRange range, bool log) {
    const double magnitude = std::max(std::abs(range.lower), std::abs(range.upper));
    if (log) {
        range.lower = std::pow(10.0, std::floor(std::log10(range.lower) + 1e-9));
        range.upper = std::pow(10.0, std::ceil(std::log10(range.upper) - 1e-9));
        if (range.lower >= range.upper) range.upper = range.lower * 10.0;
        return range;
    }
    if (range.upper - range.lower <= std::max(kLeastSpan * magnitude, kSmallestSpan)) {
        const double half = magnitude > kSmallestSpan ? 0.1 * magnitude : 0.5;
        range = {range.lower - half, range.upper + half};
    }
    return range;
}

ChartRange automaticRange(const ChartState& state, int axis) {
    if (axis == ChartAxis::X && hasCategories(state))
        return {-0.5, static_cast<double>(state.categories.size()) - 0.5};
    const bool log = isLog(state, axis);
    ChartRange range = dataRange(state, axis);
    if (range.lower > range.upper) return log ? ChartRange{1.0, 10.0} : ChartRange{};
    if (axis == ChartAxis::X && state.form == ChartForm::Bars && !log) {
        const double half = 0.5 * barPlaceWidth(state) / kBarShare;
        return widened({range.lower - half, range.upper + half}, false);
    }
    range = widened(range, log);
    if (log) return range;
    const int divisions = state.axes[static_cast<std::size_t>(axis)].divisions;
    if (divisions == 1) return range; // one round step never covers a range with zero inside
    const double step = coveringStep(range, divisions > 0 ? divisions : kUsualDivisions);
    range.lower = std::floor(range.lower / step + 1e-9) * step;
    range.upper =
        divisions > 0 ? range.lower + divisions * step : std::ceil(range.upper / step - 1e-9) * step;
    return range;
}

/// Ticks at the multiples of a step that lie in the range.
std::vector<double> multiples(const ChartRange& range, double step) {
    std::vector<double> ticks;
    const double first = std::ceil(range.lower / step - 1e-6);
    const double count = std::floor(range.upper / step + 1e-6) - first;
    for (int i = 0; i <= static_cast<int>(std::min(count, 1000.0)); ++i) {
        const double value = (first + i) * step;
        ticks.push_back(std::abs(value) < 1e-9 * step ? 0.0 : value);
    }
    return ticks;
}

void linearTicks(ChartTicks& ticks, const ChartRange& range, int divisions, double wanted) {
    constexpr int kMinorSteps = 5;
    if (divisions > 0) {
        for (int i = 0; i <= divisions; ++i)
            ticks.major.push_back(range.lower + (range.upper - range.lower) / divisions * i);
        for (int i = 0; i < divisions * kMinorSteps; ++i)
            if (i % kMinorSteps)
                ticks.minor.push_back(range.lower +
                                      (range.upper - range.lower) / divisions / kMinorSteps * i);
        return;
    }
    const double step = roundStep((range.upper - range.lower) / wanted);
    ticks.major = multiples(range, step);
    for (const double value : multiples(range, step / kMinorSteps))
        if (std::abs(std::remainder(value, step)) > 1e-3 * step) ticks.minor.push_back(value);
}

/// Whole powers of ten, at most so many steps of them; in less than a decade round values.
void logTicks(ChartTicks& ticks, const ChartRange& range, double wanted) {
    const double decades = std::log10(range.upper) - std::log10(range.lower);
    if (decades < 1.0) return linearTicks(ticks, range, 0, wanted);
    const int every = std::max(1, static_cast<int>(std::ceil(decades / wanted)));
    const int first = static_cast<int>(std::floor(std::log10(range.lower) + 1e-9));
    const int last = static_cast<int>(std::floor(std::log10(range.upper) + 1e-9));
    for (int power = first; power <= last; ++power) {
        const double decade = std::pow(10.0, power);
        if (decade >= range.lower * (1.0 - 1e-9) && power % every == 0) ticks.major.push_back(decade);
        for (int i = 2; i < 10 && every == 1; ++i)
            if (i * decade > range.lower && i * decade < range.upper) ticks.minor.push_back(i * decade);
    }
}

void categoryTicks(ChartTicks& ticks, const ChartRange& range, double pixels) {
    const double count = range.upper - range.lower;
    const double every = std::max(1.0, std::ceil(count / std::max(pixels, 1.0) * 8.0));
    ticks.major = multiples(range, every);
}

} // namespace

bool isDrawable(double value, bool log) {
    return std::abs(value) <= kLargestChartValue && (!log || value >= 1.0 / kLargestChartValue);
}

bool isShowable(const ChartRange& range, bool log) {
    if (!isDrawable(range.lower, log) || !isDrawable(range.upper, log)) return false;
    const double magnitude = std::max(std::abs(range.lower), std::abs(range.upper));
    return range.upper - range.lower > std::max(kLeastSpan * magnitude, kSmallestSpan);
}

bool hasCategories(const ChartState& state) {
    return !state.categories.empty();
}

bool isLog(const ChartState& state, int axis) {
    return state.axes[static_cast<std::size_t>(axis)].log && !(axis == ChartAxis::X && hasCategories(state));
}

ChartRange shownRange(const ChartState& state, int axis) {
    const ChartAxisState& own = state.axes[static_cast<std::size_t>(axis)];
    for (const auto& range : {own.zoomed, own.range})
        if (range && isShowable(*range, isLog(state, axis))) return *range;
    return automaticRange(state, axis);
}

double valueAt(double fraction, const ChartRange& range, bool log) {
    if (!log) return range.lower + fraction * (range.upper - range.lower);
    const double power =
        std::log10(range.lower) + fraction * (std::log10(range.upper) - std::log10(range.lower));
    return std::pow(10.0, power);
}

double barPlaceWidth(const ChartState& state) {
    if (hasCategories(state)) return kBarShare;
    std::vector<double> places;
    for (const ChartSeries& series : state.series)
        for (const double x : series.x)
            if (isDrawable(x, false)) places.push_back(x);
    std::ranges::sort(places);
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < places.size(); ++i)
        if (places[i] > places[i - 1]) least = std::min(least, places[i] - places[i - 1]);
    return kBarShare * (std::isfinite(least) ? least : 1.0);
}

ChartTicks chartTicks(const ChartState& state, int axis, const ChartRange& range, double pixels,
                      double lineHeight) {
    const bool across = axis == ChartAxis::X;
    const double wanted = std::clamp(pixels / (across ? 60.0 : 40.0), 1.0, 12.0);
    ChartTicks ticks;
    const int divisions = state.axes[static_cast<std::size_t>(axis)].divisions;
    if (across && hasCategories(state))
        categoryTicks(ticks, range, pixels);
    else if (isLog(state, axis))
        logTicks(ticks, range, divisions > 0 ? divisions : wanted);
    else
        linearTicks(ticks, range, divisions, wanted);
    for (const double value : ticks.major)
        ticks.labels.push_back(axisText(state, axis, value));
    thinLabels(ticks, across, pixels, lineHeight);
    return ticks;
}

} // namespace tqx::frx
