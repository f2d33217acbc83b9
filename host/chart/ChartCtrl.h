#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"
#include "host/chart/ChartState.h"

#include <cstdint>
#include <span>
#include <string>

namespace tqx::frx {

/// An x-y or bar chart. Attach it to a placeholder of a dialog, or Create it. Setters answer non-zero when
/// the chart took the value; without a window, for a series or an axis that is not there, or for a value that
/// has no meaning nothing changes. An axis is ChartAxis::X, ::Y or ::Both; series are numbered from 0.
/// A screen shows changes with the next Redraw.
class VEXA_API MChartCtrl : public CWnd {
  public:
    using CWnd::Create;
    int Create(const CRect& rect, CWnd* parent, UINT id);

    /// ChartForm; ChartBars; whether a frame is around the plot; whether bars side by side stand on zero.
    int SetChart(int form, int arrangement = ChartBars::SideBySide, int frame = 1, int fromZero = 1);
    int SetTitle(const std::wstring& title);

    int SetAxisTitle(int axis, const std::wstring& title);
    int SetAxisTitleSize(int axis, double points);                  ///< 1 to 72
    int SetAxisDataFormat(int axis, const std::wstring& format);    ///< printf-like for one real; empty: "%g"
    int SetAxisRange(int axis, double lower, double upper);         ///< ends the user's zoom of the axis
    int ResetAxisRange(int axis);                                   ///< that of the data again
    int GetAxisRange(int axis, double& lower, double& upper) const; ///< as it is shown
    /// 0: as many as look well; at most 100. On a logarithmic axis not more steps of powers of ten than that.
    int SetAxisDivision(int axis, int divisions);
    int SetAxisLog(int axis, int on);

    /// The point goes to the end of its series; `series` may be one behind the last one, which is made.
    int AddData(int series, double x, double y);
    int AddData(int series, const std::wstring& label, double value);
    int AddData(int series, std::span<const double> x, std::span<const double> y); ///< of the same size
    int RemoveDataAll(); ///< all series with their looks, and the user's zoom
    int GetSeriesCount() const;
    int SetSeriesName(int series, const std::wstring& name);
    /// ChartMarker; others than Line also without EnableMarker. Bars have none.
    int SetSeriesMarker(int series, unsigned marker);
    int SetSeriesLineDash(int series, unsigned dash);    ///< ChartDash; of bars that of their outline
    int SetSeriesLineWidth(int series, double width);    ///< pixels, up to 1000; outlines of bars have half
    int SetSeriesColor(int series, std::uint32_t color); ///< 0x00BBGGRR

    int EnableMarker(int enable); ///< on all series that have no marker of their own
    int ShowLegend(int show);
    int ShowGridLine(int show);
    int ShowMinorGridLine(int show);
    int ShowSummary(int show); ///< points and extremes of each series below the chart
    int ShowToolTip(int show); ///< the nearest value under the mouse
    int ShowContextMenu(int show) { return ShowContextMenu(ChartMenu::All, show); }
    int ShowContextMenu(int entries, int show); ///< ChartMenu
    /// 0: none; else the wheel enlarges around the mouse, dragging moves, a double click shows all again.
    /// `axes`: bits of ChartZoom.
    int SetZoom(int mode, int axes);

    int SetDirty(int dirty = 1); ///< of changed data; other setters do it themselves
    int Redraw();                ///< has what is dirty shown; non-zero when something was

    /// The chart as it stands, in pixels of its window, with texts of the host.
    std::string GetSvg() const;

  protected:
    void PreSubclassWindow() override;

  private:
    ChartState* State() const;
    ChartSeries* SeriesToFill(int series);
    template <class Change>
    int ChangeAxes(int axis, Change change);
    template <class Value, class Given>
    int Set(Value ChartState::*member, const Given& value);
    template <class Value, class Given>
    int SetOfAxes(int axis, Value ChartAxisState::*member, const Given& value);
    template <class Value, class Given>
    int SetOfSeries(int series, Value ChartSeries::*member, const Given& value);
};

/// The chart of a window; null when it is none.
VEXA_API const ChartState* findChart(HWND window);
VEXA_API ChartState* findChartToChange(HWND window);

/// The user's zoom: a range for each axis; those that may not be zoomed stay. False when nothing changed.
VEXA_API bool zoomChart(HWND window, const ChartRange& x, const ChartRange& y);
VEXA_API bool resetChartZoom(HWND window);

/// Texts in the language of the host.
struct ChartTexts;
VEXA_API ChartTexts hostChartTexts();

} // namespace tqx::frx
