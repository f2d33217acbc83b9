#pragma once

#include "host/chart/ChartView.h"
#include "workbench/desktop/ChartPlot.h"

#include <functional>

namespace workbench::desktop {

/// A chart drawn by the plotting library, with the ranges, ticks, points and texts of its SVG picture.
class ChartWidget : public QCustomPlot {
  public:
    /// Where the chart's state is, null when it is gone; asked anew each time.
    using Source = std::function<const tqx::frx::ChartState*()>;
    explicit ChartWidget(Source source, QWidget* parent = nullptr);

    void showState(); ///< takes over what the state says now
    const tqx::frx::ChartState* state() const { return source_(); }
    /// The plot in pixels of the widget, as it was drawn.
    tqx::frx::ChartView view() const;
    bool isTipShown() const { return tip_->visible(); }

  protected:
    // What the user's mouse asks for.
    virtual void zoomWanted(const tqx::frx::ChartRange& /*x*/, const tqx::frx::ChartRange& /*y*/) {}
    virtual void wholeWanted() {}
    virtual void menuWanted(QPoint /*at*/) {}

    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    void makeTip();
    void placePlot(const tqx::frx::ChartState& state);
    void showAxes(const tqx::frx::ChartState& state);
    void showAxis(const tqx::frx::ChartState& state, int which);
    void showTexts(const tqx::frx::ChartState& state);
    void showLegend(const tqx::frx::ChartState& state);
    void showSeries();
    void followMouse(const QPointF& at);
    void hideTip();

    Source source_;
    QCPTextElement* title_;
    QCPTextElement* summary_;
    QCPLayoutGrid* legendColumn_;
    QCPItemText* tip_ = nullptr;
    QCPItemEllipse* tipMark_ = nullptr;
    std::optional<QPointF> dragStart_;
    tqx::frx::ChartView dragView_;
    tqx::frx::ChartView shown_; ///< the ranges as they were drawn
};

} // namespace workbench::desktop
