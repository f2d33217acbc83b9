#pragma once

#include "workbench/desktop/QtWidgets.h"

#include <string>

namespace workbench::desktop {

/// Keeps a list of what a user sees in a file, for programs that work with the screen: a line for every
/// window, control, menu entry and tree item that is visible, with its place on the screen. Written anew,
/// whole, when something changed.
///
///     KIND LEFT TOP WIDTH HEIGHT STATE TEXT
class ScreenDescription {
  public:
    explicit ScreenDescription(std::string path);

  private:
    void write();

    QTimer timer_;
    std::string path_;
    QString last_;
};

/// The list as it is now.
QString screenDescription();

} // namespace workbench::desktop
