#include "host/chart/ChartCtrl.h"

#include "framework/windows/controls/ControlClasses.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "host/MSGFunction.h"
#include "host/chart/ChartRange.h"
#include "host/chart/ChartSvg.h"

#include <algorithm>
#include <typeinfo>

namespace tqx::frx {
namespace {

constexpr int kMostDivisions = 100;
constexpr double kLargestTitle = 72.0;
constexpr double kWidestLine = 1000.0;

bool isMarker(unsigned code) {
    using namespace ChartMarker;
    for (const unsigned known : {Line, Dot, Square, Triangle, InvertTriangle, Diamond})
        if (code == known) return true;
    return false;
}

bool isDash(unsigned code) {
    using namespace ChartDash;
    for (const unsigned known : {Line, Dash, Dot, DashDot, DashDotDot})
        if (code == known) return true;
    return false;
}

} // namespace

const ChartState* findChart(HWND window) {
    return findChartToChange(window);
}

ChartState* findChartToChange(HWND window) {
    const auto* record = framework::findWindow(window);
    const auto* state = record ? record->controlState.get() : nullptr;
    // Comparing the type is several times as quick as a cast that looks for bases, for every point that is
    // added.
    return state && typeid(*state) == typeid(ChartState)
               ? static_cast<ChartState*>(record->controlState.get())
               : nullptr;
}

bool zoomChart(HWND window, const ChartRange& x, const ChartRange& y) {
    ChartState* state = findChartToChange(window);
    if (!state || !state->zoomMode) return false;
    bool isChanged = false;
    const auto zoom = [&](int axis, int bit, const ChartRange& range) {
        if (!(state->zoomAxes & bit) || !isShowable(range, isLog(*state, axis))) return;
        isChanged = isChanged || shownRange(*state, axis) != range;
        state->axes[static_cast<std::size_t>(axis)].zoomed = range;
    };
    zoom(ChartAxis::X, ChartZoom::X, x);
    zoom(ChartAxis::Y, ChartZoom::Y, y);
    if (isChanged) framework::windowChanged(window, framework::change::kContent);
    return isChanged;
}

bool resetChartZoom(HWND window) {
    ChartState* state = findChartToChange(window);
    if (!state || !(state->axes[0].zoomed || state->axes[1].zoomed)) return false;
    for (ChartAxisState& axis : state->axes)
        axis.zoomed.reset();
    framework::windowChanged(window, framework::change::kContent);
    return true;
}

ChartTexts hostChartTexts() {
    return {CMSGFunction::GetValue(L"IDS_CHART_SUMMARY"), CMSGFunction::GetValue(L"IDS_CHART_MORE")};
}

int MChartCtrl::Create(const CRect& rect, CWnd* parent, UINT id) {
    return CWnd::Create(nullptr, L"", WS_CHILD | WS_VISIBLE, rect, parent, id);
}

void MChartCtrl::PreSubclassWindow() {
    CWnd::PreSubclassWindow();
    auto* record = Record();
    if (record && !record->controlState) record->controlState = std::make_unique<ChartState>();
}

ChartState* MChartCtrl::State() const {
    return findChartToChange(m_hWnd);
}

ChartSeries* MChartCtrl::SeriesToFill(int series) {
    ChartState* state = State();
    if (!state || series < 0 || static_cast<std::size_t>(series) > state->series.size()) return nullptr;
    if (static_cast<std::size_t>(series) == state->series.size()) state->series.emplace_back();
    return &state->series[static_cast<std::size_t>(series)];
}

template <class Change>
int MChartCtrl::ChangeAxes(int axis, Change change) {
    ChartState* state = State();
    if (!state || axis < ChartAxis::Both || axis > ChartAxis::Y) return 0;
    for (const int which : {ChartAxis::X, ChartAxis::Y})
        if (axis == which || axis == ChartAxis::Both) change(state->axes[static_cast<std::size_t>(which)]);
    return SetDirty();
}

template <class Value, class Given>
int MChartCtrl::Set(Value ChartState::*member, const Given& value) {
    ChartState* state = State();
    if (!state) return 0;
    state->*member = value;
    return SetDirty();
}

template <class Value, class Given>
int MChartCtrl::SetOfAxes(int axis, Value ChartAxisState::*member, const Given& value) {
    return ChangeAxes(axis, [&](ChartAxisState& changed) { changed.*member = value; });
}

template <class Value, class Given>
int MChartCtrl::SetOfSeries(int series, Value ChartSeries::*member, const Given& value) {
    ChartState* state = State();
    if (!state || series < 0 || static_cast<std::size_t>(series) >= state->series.size()) return 0;
    state->series[static_cast<std::size_t>(series)].*member = value;
    return SetDirty();
}

int MChartCtrl::SetChart(int form, int arrangement, int frame, int fromZero) {
    ChartState* state = State();
    if (!state || (form != ChartForm::Lines && form != ChartForm::Bars) ||
        (arrangement != ChartBars::SideBySide && arrangement != ChartBars::Stacked))
        return 0;
    state->form = form;
    state->arrangement = arrangement;
    state->frame = frame != 0;
    state->fromZero = fromZero != 0;
    return SetDirty();
}

int MChartCtrl::SetTitle(const std::wstring& title) {
    return Set(&ChartState::title, title);
}

int MChartCtrl::SetAxisTitle(int axis, const std::wstring& title) {
    return SetOfAxes(axis, &ChartAxisState::title, title);
}

int MChartCtrl::SetAxisTitleSize(int axis, double points) {
    if (!(points >= 1.0 && points <= kLargestTitle)) return 0;
    return SetOfAxes(axis, &ChartAxisState::titleSize, points);
}

int MChartCtrl::SetAxisDataFormat(int axis, const std::wstring& format) {
    return SetOfAxes(axis, &ChartAxisState::format, format);
}

int MChartCtrl::SetAxisRange(int axis, double lower, double upper) {
    if (!isShowable({lower, upper}, false)) return 0;
    return ChangeAxes(axis, [&](ChartAxisState& changed) {
        changed.range = {lower, upper};
        changed.zoomed.reset();
    });
}

int MChartCtrl::ResetAxisRange(int axis) {
    return ChangeAxes(axis, [&](ChartAxisState& changed) {
        changed.range.reset();
        changed.zoomed.reset();
    });
}

int MChartCtrl::GetAxisRange(int axis, double& lower, double& upper) const {
    const ChartState* state = State();
    if (!state || axis < ChartAxis::X || axis > ChartAxis::Y) return 0;
    const ChartRange range = shownRange(*state, axis);
    lower = range.lower;
    upper = range.upper;
    return 1;
}

int MChartCtrl::SetAxisDivision(int axis, int divisions) {
    if (divisions < 0) return 0;
    return SetOfAxes(axis, &ChartAxisState::divisions, std::min(divisions, kMostDivisions));
}

int MChartCtrl::SetAxisLog(int axis, int on) {
    return SetOfAxes(axis, &ChartAxisState::log, on != 0);
}

int MChartCtrl::AddData(int series, double x, double y) {
    ChartSeries* filled = SeriesToFill(series);
    if (!filled) return 0;
    filled->x.push_back(x);
    filled->y.push_back(y);
    return 1;
}

int MChartCtrl::AddData(int series, const std::wstring& label, double value) {
    ChartState* state = State();
    ChartSeries* filled = SeriesToFill(series);
    if (!filled) return 0;
    const auto [place, isNew] = state->categoryPositions.try_emplace(label, state->categories.size());
    if (isNew) state->categories.push_back(label);
    filled->x.push_back(static_cast<double>(place->second));
    filled->y.push_back(value);
    return 1;
}

int MChartCtrl::AddData(int series, std::span<const double> x, std::span<const double> y) {
    ChartSeries* filled = x.size() == y.size() ? SeriesToFill(series) : nullptr;
    if (!filled) return 0;
    filled->x.insert(filled->x.end(), x.begin(), x.end());
    filled->y.insert(filled->y.end(), y.begin(), y.end());
    return 1;
}

int MChartCtrl::RemoveDataAll() {
    ChartState* state = State();
    if (!state) return 0;
    state->series.clear();
    state->categories.clear();
    state->categoryPositions.clear();
    for (ChartAxisState& axis : state->axes)
        axis.zoomed.reset();
    return SetDirty();
}

int MChartCtrl::GetSeriesCount() const {
    const ChartState* state = State();
    return state ? static_cast<int>(state->series.size()) : 0;
}

int MChartCtrl::SetSeriesName(int series, const std::wstring& name) {
    return SetOfSeries(series, &ChartSeries::name, name);
}

int MChartCtrl::SetSeriesMarker(int series, unsigned marker) {
    return isMarker(marker) ? SetOfSeries(series, &ChartSeries::marker, marker) : 0;
}

int MChartCtrl::SetSeriesLineDash(int series, unsigned dash) {
    return isDash(dash) ? SetOfSeries(series, &ChartSeries::dash, dash) : 0;
}

int MChartCtrl::SetSeriesLineWidth(int series, double width) {
    return width > 0.0 && width <= kWidestLine ? SetOfSeries(series, &ChartSeries::width, width) : 0;
}

int MChartCtrl::SetSeriesColor(int series, std::uint32_t color) {
    constexpr std::uint32_t kColorBits = 0xFFFFFF;
    return color <= kColorBits ? SetOfSeries(series, &ChartSeries::color, color) : 0;
}

int MChartCtrl::EnableMarker(int enable) {
    return Set(&ChartState::markers, enable != 0);
}
int MChartCtrl::ShowLegend(int show) {
    return Set(&ChartState::legend, show != 0);
}
int MChartCtrl::ShowGridLine(int show) {
    return Set(&ChartState::grid, show != 0);
}
int MChartCtrl::ShowMinorGridLine(int show) {
    return Set(&ChartState::minorGrid, show != 0);
}
int MChartCtrl::ShowSummary(int show) {
    return Set(&ChartState::summary, show != 0);
}
int MChartCtrl::ShowToolTip(int show) {
    return Set(&ChartState::toolTip, show != 0);
}

int MChartCtrl::ShowContextMenu(int entries, int show) {
    ChartState* state = State();
    if (!state || entries < ChartMenu::All || entries > ChartMenu::Table) return 0;
    state->menu = show != 0;
    state->menuEntries = entries;
    return SetDirty();
}

int MChartCtrl::SetZoom(int mode, int axes) {
    ChartState* state = State();
    if (!state || mode < 0 || axes < 0 || axes > (ChartZoom::X | ChartZoom::Y)) return 0;
    state->zoomMode = mode;
    state->zoomAxes = axes;
    return SetDirty();
}

int MChartCtrl::SetDirty(int dirty) {
    ChartState* state = State();
    if (!state) return 0;
    state->dirty = dirty != 0;
    return 1;
}

int MChartCtrl::Redraw() {
    ChartState* state = State();
    if (!state || !state->dirty) return 0;
    state->dirty = false;
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return 1;
}

std::string MChartCtrl::GetSvg() const {
    const ChartState* state = State();
    if (!state) return {};
    CRect client;
    GetClientRect(&client);
    return chartSvg(*state, client.Width(), client.Height(), hostChartTexts());
}

} // namespace tqx::frx
