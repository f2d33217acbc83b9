#pragma once

#include "workbench/desktop/ChartWidget.h"

namespace workbench::desktop {

/// Writes a chart as it stands, whole or not at all: its picture (.png, .pdf, .svg) or its table (.csv), by
/// the name's ending. A sentence on failure.
QString exportChart(ChartWidget& chart, const QString& path);

/// Asks for the name of a file to write; empty when the user wants none. Another one may stand in for it.
using FileChooser = std::function<QString(QWidget* above, const QString& title, const QString& kinds)>;
FileChooser& chartFileChooser();

} // namespace workbench::desktop
