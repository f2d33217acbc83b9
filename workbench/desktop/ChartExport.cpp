#include "workbench/desktop/ChartExport.h"

#include "host/chart/ChartCtrl.h"
#include "host/chart/ChartSvg.h"
#include "host/chart/ChartTable.h"

namespace workbench::desktop {
namespace {

bool writeBytes(QSaveFile& file, const std::string& bytes) {
    const auto size = static_cast<qint64>(bytes.size());
    return file.write(bytes.data(), size) == size;
}

bool writePng(QSaveFile& file, ChartWidget& chart) {
    constexpr double kScale = 2.0; // sharp in print
    return chart.toPixmap(chart.width(), chart.height(), kScale).save(&file, "PNG");
}

bool writePdf(QSaveFile& file, ChartWidget& chart) {
    QPdfWriter writer(&file);
    writer.setTitle("Chart");
    writer.setPageMargins(QMarginsF());
    constexpr double kPointsPerPixel = 72.0 / 96.0;
    writer.setPageSize(QPageSize(QSizeF(chart.size()) * kPointsPerPixel, QPageSize::Point));
    QCPPainter painter;
    if (!painter.begin(&writer)) return false;
    painter.setMode(QCPPainter::pmVectorized);
    painter.setMode(QCPPainter::pmNoCaching);
    painter.setWindow(chart.rect());
    chart.toPainter(&painter, chart.width(), chart.height());
    return painter.end();
}

} // namespace

QString exportChart(ChartWidget& chart, const QString& path) {
    using namespace tqx::frx;
    const ChartState* state = chart.state();
    const QString kind = QFileInfo(path).suffix().toLower();
    if (!state || !QStringList({"png", "pdf", "svg", "csv"}).contains(kind))
        return QString("a chart is written to .png, .pdf, .svg or .csv, which \"%1\" is not").arg(path);
    QSaveFile file(path);
    bool isWritten = file.open(QIODevice::WriteOnly);
    if (isWritten && kind == "png") isWritten = writePng(file, chart);
    if (isWritten && kind == "pdf") isWritten = writePdf(file, chart);
    if (isWritten && kind == "svg")
        isWritten = writeBytes(file, chartSvg(*state, chart.width(), chart.height(), hostChartTexts()));
    if (isWritten && kind == "csv") isWritten = writeBytes(file, chartTable(*state));
    if (isWritten && file.commit()) return {};
    return QString("cannot write %1: %2").arg(path, file.errorString());
}

FileChooser& chartFileChooser() {
    static FileChooser chooser = [](QWidget* above, const QString& title, const QString& kinds) {
        return QFileDialog::getSaveFileName(above, title, {}, kinds);
    };
    return chooser;
}

} // namespace workbench::desktop
