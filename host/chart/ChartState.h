#pragma once

#include "framework/Export.h"
#include "framework/windows/WindowRecord.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tqx::frx {

namespace ChartAxis {
inline constexpr int X = 0;
inline constexpr int Y = 1;
inline constexpr int Both = -1; ///< for setters
} // namespace ChartAxis

/// First argument of MChartCtrl::SetChart.
namespace ChartForm {
inline constexpr int Lines = 1;
inline constexpr int Bars = 2;
} // namespace ChartForm

/// Second argument of MChartCtrl::SetChart: where the bars of one place stand.
namespace ChartBars {
inline constexpr int SideBySide = 1;
inline constexpr int Stacked = 2;
} // namespace ChartBars

/// What stands at the points of a series.
namespace ChartMarker {
inline constexpr unsigned Line = 1024; ///< nothing, the line alone
inline constexpr unsigned Dot = 3072;
inline constexpr unsigned Square = 3328;
inline constexpr unsigned Triangle = 3584;
inline constexpr unsigned InvertTriangle = 5376;
inline constexpr unsigned Diamond = 5632;
} // namespace ChartMarker

namespace ChartDash {
inline constexpr unsigned Line = 2;
inline constexpr unsigned Dash = 5;
inline constexpr unsigned Dot = 6;
inline constexpr unsigned DashDot = 7;
inline constexpr unsigned DashDotDot = 8;
} // namespace ChartDash

/// Bits of the second argument of MChartCtrl::SetZoom: the axes that the user's zoom reaches.
namespace ChartZoom {
inline constexpr int X = 1;
inline constexpr int Y = 2;
} // namespace ChartZoom

/// First argument of MChartCtrl::ShowContextMenu.
namespace ChartMenu {
inline constexpr int All = 0;
inline constexpr int Picture = 1; ///< exports of the picture alone
inline constexpr int Table = 2;   ///< export of the table alone
} // namespace ChartMenu

struct ChartRange {
    double lower = 0.0;
    double upper = 1.0;
    friend bool operator==(const ChartRange&, const ChartRange&) = default;
};

struct ChartAxisState {
    std::wstring title;
    double titleSize = 9.0; ///< points
    std::wstring format;    ///< of the numbers, printf-like for one real; empty: the shortest of six digits
    std::optional<ChartRange> range;  ///< set by the program; else that of the data
    std::optional<ChartRange> zoomed; ///< set by the user's zoom, before the others
    int divisions = 0;                ///< 0: as many as look well
    bool log = false;
};

struct ChartSeries {
    std::wstring name;
    std::vector<double> x;          ///< as many as y; of a point with a label the position of its category
    std::vector<double> y;          ///< not drawable: the line breaks there
    std::optional<unsigned> marker; ///< ChartMarker; none: the chart's to say
    unsigned dash = ChartDash::Line;
    double width = 1.0;                 ///< pixels at 96 dpi
    std::optional<std::uint32_t> color; ///< 0x00BBGGRR; none: by position
};

/// Everything about a chart that its pictures show. It belongs to the chart's window record.
struct VEXA_API ChartState final : framework::ControlState {
    int form = ChartForm::Lines;
    int arrangement = ChartBars::SideBySide;
    bool frame = true;    ///< a line around the plot, else its two axes
    bool fromZero = true; ///< bars side by side stand on zero, else on the lower end of the range
    std::wstring title;
    std::array<ChartAxisState, 2> axes; ///< by ChartAxis
    std::vector<ChartSeries> series;
    std::vector<std::wstring> categories; ///< labels in the order of their first point
    std::unordered_map<std::wstring, std::size_t> categoryPositions;

    bool markers = false;
    bool legend = true;
    bool grid = true;
    bool minorGrid = false;
    bool summary = false;
    bool toolTip = false;
    bool menu = false;
    int menuEntries = ChartMenu::All;
    int zoomMode = 0; ///< 0: none
    int zoomAxes = ChartZoom::X | ChartZoom::Y;
    bool dirty = false; ///< to be shown by the next Redraw
};

/// The marker that a series is drawn with: its own, or one by position where the chart enables markers.
VEXA_API unsigned markerOf(const ChartState& state, std::size_t series);
/// 0x00BBGGRR: its own, or one by position from eight that also colour-blind readers tell apart.
VEXA_API std::uint32_t colorOf(const ChartState& state, std::size_t series);
/// Pixels of line and gap, alternating, for a line of one pixel; empty: no gaps.
VEXA_API std::vector<double> dashPattern(unsigned dash);
/// Pixels of the line around a bar: half of what the series' line has.
VEXA_API double outlineWidth(const ChartSeries& series);
/// Its name, or its number from 1 where it has none.
VEXA_API std::wstring nameOf(const ChartState& state, std::size_t series);

} // namespace tqx::frx
