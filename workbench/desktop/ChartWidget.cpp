#include "workbench/desktop/ChartWidget.h"

#include "host/chart/ChartCtrl.h"
#include "host/chart/ChartHits.h"
#include "host/chart/ChartLabels.h"
#include "workbench/desktop/ChartPlottables.h"
#include "workbench/desktop/ControlView.h"

#include <algorithm>
#include <cmath>

namespace workbench::desktop {
namespace {

using namespace tqx::frx;

constexpr int kText = kChartText;
constexpr int kTitle = 15;
constexpr double kLine = 16.0; ///< height of a line of labels
constexpr int kLeastMargin = 15;
constexpr double kBorder = 2.0; ///< a label that comes nearer to the border is left out by the library
constexpr double kLeastStretch = 0.001;
constexpr double kReach = 12.0; ///< of the tool tip, pixels
constexpr const char* kOverlay = "overlay";

const QColor kFrame(0x40, 0x40, 0x40);
const QColor kGrid(0xd0, 0xd0, 0xd0);
const QColor kMinorGrid(0xee, 0xee, 0xee);

QFont fontOf(double pixels) {
    QFont font = QApplication::font();
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
    return font;
}

/// The ticks that the chart's state asks for.
class StateTicker final : public QCPAxisTicker {
  public:
    StateTicker(const ChartWidget& chart, int axis)
        : chart_(chart)
        , axis_(axis) {}

    void generate(const QCPRange& range, const QLocale&, QChar, int, QVector<double>& ticks,
                  QVector<double>* subTicks, QVector<QString>* tickLabels) override {
        ticks.clear();
        if (subTicks) subTicks->clear();
        if (tickLabels) tickLabels->clear();
        const ChartState* state = chart_.state();
        if (!state) return;
        const QRect plot = chart_.axisRect()->rect();
        const ChartTicks made =
            chartTicks(*state, axis_, {range.lower, range.upper},
                       std::max(1, axis_ == ChartAxis::X ? plot.width() : plot.height()), kLine);
        ticks = {made.major.begin(), made.major.end()};
        if (subTicks) *subTicks = {made.minor.begin(), made.minor.end()};
        if (!tickLabels) return;
        for (const std::wstring& label : made.labels)
            tickLabels->append(qText(label));
    }

  private:
    const ChartWidget& chart_;
    int axis_;
};

/// The range after the axis was enlarged around a place of it, or moved: both in fractions of its length.
ChartRange enlarged(const ChartRange& range, bool log, double around, double factor) {
    return {valueAt(around - around * factor, range, log),
            valueAt(around + (1.0 - around) * factor, range, log)};
}
ChartRange moved(const ChartRange& range, bool log, double by) {
    return {valueAt(-by, range, log), valueAt(1.0 - by, range, log)};
}

} // namespace

ChartWidget::ChartWidget(Source source, QWidget* parent)
    : QCustomPlot(parent)
    , source_(std::move(source))
    , title_(new QCPTextElement(this, QString(), fontOf(kTitle)))
    , summary_(new QCPTextElement(this, QString(), fontOf(kText)))
    , legendColumn_(new QCPLayoutGrid) {
    setMouseTracking(true);
    setAutoAddPlottableToLegend(false);
    setSelectionTolerance(0);
    plotLayout()->insertRow(0);
    plotLayout()->addElement(0, 0, title_);
    plotLayout()->addElement(2, 0, summary_);
    summary_->setTextFlags(Qt::AlignLeft | Qt::TextDontClip);
    plotLayout()->setRowSpacing(2);
    plotLayout()->addElement(1, 1, legendColumn_);
    plotLayout()->setColumnStretchFactor(1, kLeastStretch);
    legendColumn_->addElement(1, 0, new QCPLayoutElement(this)); // takes what the legend leaves
    legendColumn_->setRowStretchFactor(0, kLeastStretch);
    axisRect()->insetLayout()->setInsetAlignment(0, Qt::AlignTop | Qt::AlignRight);
    legend->setBorderPen(Qt::NoPen);
    legend->setFont(fontOf(kText));
    legend->setIconSize(26, 14);
    for (const int which : {ChartAxis::X, ChartAxis::Y}) {
        QCPAxis* axis = which == ChartAxis::X ? xAxis : yAxis;
        axis->setTicker(QSharedPointer<QCPAxisTicker>(new StateTicker(*this, which)));
        for (QCPAxis* drawn : {axis, which == ChartAxis::X ? xAxis2 : yAxis2}) {
            drawn->setBasePen(kFrame);
            drawn->setTickPen(kFrame);
            drawn->setSubTickPen(Qt::NoPen);
            drawn->setNumberFormat("g"); // labels as they are, without powers set above the line
            drawn->setTickLabelFont(fontOf(kText));
            drawn->setTickLengthIn(0);
            drawn->setTickLengthOut(5);
        }
    }
    for (QCPAxis* opposite : {xAxis2, yAxis2}) {
        opposite->setTicks(false);
        opposite->setTickLabels(false);
    }
    makeTip();
}

void ChartWidget::makeTip() {
    // The topmost layer is drawn by itself: following the mouse leaves the curve alone.
    tip_ = new QCPItemText(this);
    tipMark_ = new QCPItemEllipse(this);
    for (QCPAbstractItem* item :
         {static_cast<QCPAbstractItem*>(tip_), static_cast<QCPAbstractItem*>(tipMark_)}) {
        item->setLayer(kOverlay);
        item->setClipToAxisRect(false);
        item->setVisible(false);
        item->setSelectable(false);
        for (QCPItemPosition* position : item->positions())
            position->setType(QCPItemPosition::ptAbsolute);
    }
    tip_->setFont(fontOf(kText));
    tip_->setPadding(QMargins(4, 2, 4, 2));
    tip_->setBrush(QColor(255, 255, 225));
    tip_->setPen(kFrame);
    tipMark_->setPen(QPen(kFrame, 1.5));
}

ChartView ChartWidget::view() const {
    const QRect plot = axisRect()->rect();
    ChartView seen = shown_;
    seen.left = plot.left();
    seen.top = plot.top();
    seen.width = std::max(0, plot.width()); // a window may have no room for a plot
    seen.height = std::max(0, plot.height());
    return seen;
}

void ChartWidget::showState() {
    hideTip();
    clearPlottables();
    if (const ChartState* state = source_()) {
        showTexts(*state);
        showAxes(*state);
        placePlot(*state);
        const QRect placed = axisRect()->rect();
        showSeries();
        placePlot(*state); // a legend may have come or gone
        if (axisRect()->rect() != placed) showSeries();
    }
    replot(rpRefreshHint);
}

/// Places the plot, on whose pixels the points depend, with room for the labels at the ends of the x axis.
void ChartWidget::placePlot(const ChartState& state) {
    QMargins margins(kLeastMargin, kLeastMargin, kLeastMargin, kLeastMargin);
    axisRect()->setMinimumMargins(margins);
    updateLayout();
    const ChartView seen = view();
    const QFontMetricsF metrics(fontOf(kText));
    const ChartOverhang overhang = overhangOf(
        chartTicks(state, ChartAxis::X, seen.x, std::max(1.0, seen.width), kLine), seen, width() - kBorder,
        [&](const std::wstring& label) { return metrics.horizontalAdvance(qText(label)); });
    if (overhang.left <= 0.0 && overhang.right <= 0.0) return;
    const auto pixels = [](double length) { return static_cast<int>(std::ceil(length)); };
    if (overhang.left > 0.0) margins.setLeft(axisRect()->margins().left() + pixels(overhang.left));
    margins.setRight(axisRect()->margins().right() + pixels(overhang.right));
    axisRect()->setMinimumMargins(margins);
    updateLayout();
}

void ChartWidget::showTexts(const ChartState& state) {
    title_->setText(qText(shortenedText(state.title, width() - 16.0, kTitle)));
    QStringList lines;
    if (state.summary) {
        const ChartTexts texts = hostChartTexts();
        const std::size_t listed = listedSeries(state, kMostListedSeries + 1.0);
        for (std::size_t s = 0; s < listed; ++s)
            lines << qText(shortenedText(summaryLine(state, s, texts), width() - 60.0, kText));
        if (listed < state.series.size()) lines << qText(moreSeries(state, listed, texts));
    }
    summary_->setText(lines.join('\n'));
    for (QCPTextElement* element : {title_, summary_}) {
        const bool isEmpty = element->text().isEmpty();
        element->setVisible(!isEmpty);
        element->setMaximumSize(QWIDGETSIZE_MAX, isEmpty ? 0 : QWIDGETSIZE_MAX);
        element->setMargins(isEmpty ? QMargins() : QMargins(8, 2, 8, 2));
    }
}

void ChartWidget::showAxes(const ChartState& state) {
    shown_ = chartView(state, 0.0, 0.0, 0.0, 0.0);
    showAxis(state, ChartAxis::X);
    showAxis(state, ChartAxis::Y);
    xAxis2->setVisible(state.frame);
    yAxis2->setVisible(state.frame);
}

void ChartWidget::showAxis(const ChartState& state, int which) {
    QCPAxis& axis = which == ChartAxis::X ? *xAxis : *yAxis;
    const ChartAxisState& own = state.axes[static_cast<std::size_t>(which)];
    const double titlePixels = own.titleSize * 96.0 / 72.0;
    axis.setLabel(qText(shortenedText(own.title, which == ChartAxis::X ? width() : height(), titlePixels)));
    axis.setLabelFont(fontOf(titlePixels));
    axis.setScaleType(isLog(state, which) ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
    const ChartRange& range = which == ChartAxis::X ? shown_.x : shown_.y;
    axis.setRange(range.lower, range.upper);
    axis.grid()->setVisible(state.grid || state.minorGrid);
    axis.grid()->setPen(state.grid ? QPen(kGrid) : QPen(Qt::NoPen));
    axis.grid()->setZeroLinePen(Qt::NoPen);
    axis.grid()->setSubGridVisible(state.minorGrid);
    axis.grid()->setSubGridPen(kMinorGrid);
}

void ChartWidget::showSeries() {
    const ChartState* state = source_();
    clearPlottables();
    if (!state) return;
    if (state->form == ChartForm::Bars)
        addBars(*this, *state, view());
    else
        addLines(*this, *state, view());
    showLegend(*state);
}

void ChartWidget::showLegend(const ChartState& state) {
    legend->clear();
    const bool shown = state.legend && !state.series.empty();
    legend->setVisible(shown);
    QCPLayout* const inset = axisRect()->insetLayout();
    QCPLayout* const wanted = shown ? legendColumn_ : inset;
    if (legend->layout() != wanted) {
        legend->layout()->take(legend);
        if (shown)
            legendColumn_->addElement(0, 0, legend);
        else
            axisRect()->insetLayout()->addElement(legend, Qt::AlignTop | Qt::AlignRight);
    }
    if (!shown) return;
    constexpr double kRow = 20.0; // pixels of a line of the legend
    const std::size_t most = listedSeries(state, axisRect()->height() / kRow);
    std::size_t listed = 0;
    for (int i = 0; i < plottableCount() && listed < most; ++i) {
        if (plottable(i)->name().isEmpty()) continue; // markers
        plottable(i)->addToLegend();
        ++listed;
    }
    if (listed == state.series.size()) return;
    auto* more = new QCPTextElement(this, qText(moreSeries(state, listed, hostChartTexts())), fontOf(kText));
    more->setLayer(legend->layer()); // else the legend's paper covers it
    legend->addElement(legend->rowCount(), 0, more);
}

void ChartWidget::resizeEvent(QResizeEvent* event) {
    QCustomPlot::resizeEvent(event);
    showState();
}

void ChartWidget::wheelEvent(QWheelEvent* event) {
    const ChartState* state = source_();
    if (!state || !state->zoomMode) return event->ignore();
    constexpr double kStep = 0.85;
    const double factor = std::pow(kStep, event->angleDelta().y() / 120.0);
    const ChartView seen = view();
    if (seen.width < 1.0 || seen.height < 1.0) return;
    const double atX = std::clamp((event->position().x() - seen.left) / seen.width, 0.0, 1.0);
    const double atY = std::clamp((seen.top + seen.height - event->position().y()) / seen.height, 0.0, 1.0);
    zoomWanted(enlarged(seen.x, seen.logX, atX, factor), enlarged(seen.y, seen.logY, atY, factor));
}

void ChartWidget::mousePressEvent(QMouseEvent* event) {
    hideTip();
    const ChartState* state = source_();
    if (!state) return;
    if (event->button() == Qt::RightButton && state->menu) menuWanted(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !state->zoomMode) return;
    dragStart_ = event->position();
    dragView_ = view();
}

void ChartWidget::mouseMoveEvent(QMouseEvent* event) {
    if (!dragStart_) return followMouse(event->position());
    if (dragView_.width < 1.0 || dragView_.height < 1.0) return;
    const QPointF by = event->position() - *dragStart_;
    zoomWanted(moved(dragView_.x, dragView_.logX, by.x() / dragView_.width),
               moved(dragView_.y, dragView_.logY, -by.y() / dragView_.height));
}

void ChartWidget::mouseReleaseEvent(QMouseEvent*) {
    dragStart_.reset();
}

void ChartWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    dragStart_.reset();
    if (event->button() == Qt::LeftButton) wholeWanted();
}

void ChartWidget::leaveEvent(QEvent*) {
    hideTip();
}

void ChartWidget::followMouse(const QPointF& at) {
    const ChartState* state = source_();
    const ChartView seen = view();
    const auto hit = state && state->toolTip ? hitAt(*state, seen, at.x(), at.y(), kReach) : std::nullopt;
    if (!hit) return hideTip();
    const ChartPixel pixel = hit->at;
    constexpr double kMark = 6.0;
    tipMark_->topLeft->setCoords(pixel.x - kMark, pixel.y - kMark);
    tipMark_->bottomRight->setCoords(pixel.x + kMark, pixel.y + kMark);
    tip_->setText(qText(hitText(*state, hit->series, hit->point)));
    const bool left = pixel.x > width() / 2.0, above = pixel.y > height() / 2.0;
    tip_->setPositionAlignment((left ? Qt::AlignRight : Qt::AlignLeft) |
                               (above ? Qt::AlignBottom : Qt::AlignTop));
    tip_->position->setCoords(pixel.x + (left ? -kMark : kMark), pixel.y + (above ? -kMark : kMark));
    tip_->setVisible(true);
    tipMark_->setVisible(true);
    layer(kOverlay)->replot();
}

void ChartWidget::hideTip() {
    if (!tip_->visible()) return;
    tip_->setVisible(false);
    tipMark_->setVisible(false);
    layer(kOverlay)->replot();
}

} // namespace workbench::desktop
