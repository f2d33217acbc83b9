#include "host/chart/ChartState.h"

#include <iterator>

namespace tqx::frx {
namespace {

// M. Okabe and K. Ito, "Color Universal Design", with the yellow darkened for white paper.
constexpr std::uint32_t kColors[] = {0xB27200, 0x005ED5, 0x739E00, 0xA779CC,
                                     0x009FE6, 0xE9B456, 0x3AA0B0, 0x000000};
constexpr unsigned kMarkers[] = {ChartMarker::Dot, ChartMarker::Square, ChartMarker::Triangle,
                                 ChartMarker::Diamond, ChartMarker::InvertTriangle};

} // namespace

unsigned markerOf(const ChartState& state, std::size_t series) {
    if (const auto& own = state.series[series].marker) return *own;
    return state.markers ? kMarkers[series % std::size(kMarkers)] : ChartMarker::Line;
}

std::uint32_t colorOf(const ChartState& state, std::size_t series) {
    return state.series[series].color.value_or(kColors[series % std::size(kColors)]);
}

std::vector<double> dashPattern(unsigned dash) {
    switch (dash) {
    case ChartDash::Dash:
        return {6, 3};
    case ChartDash::Dot:
        return {1.5, 2.5};
    case ChartDash::DashDot:
        return {6, 3, 1.5, 3};
    case ChartDash::DashDotDot:
        return {6, 3, 1.5, 3, 1.5, 3};
    default:
        return {};
    }
}

double outlineWidth(const ChartSeries& series) {
    return 0.5 * series.width;
}

std::wstring nameOf(const ChartState& state, std::size_t series) {
    const std::wstring& name = state.series[series].name;
    return name.empty() ? std::to_wstring(series + 1) : name;
}

} // namespace tqx::frx
