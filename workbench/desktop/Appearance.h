#pragma once

#include "workbench/desktop/QtWidgets.h"

namespace workbench::desktop {

/// Style, colours and font of the program: the same on every system, and such that a text that fits its
/// control by the framework's table of widths fits on the screen.
void setAppearance(QApplication& application);

/// What a window looks like with its title above it, for pictures of screens that draw no frames.
QImage framedPicture(QWidget& window);

} // namespace workbench::desktop
