#pragma once

#include "base/Result.h"

#include <string>

namespace workbench {

/// The name of an X display on which OpenGL windows open: the one of the environment variable DISPLAY when it
/// does, else a private virtual server of this process (Xvfb), which lives until the process ends, however
/// that happens. Tried once a process and value of DISPLAY. Not for several threads at once.
///
/// `canDraw` answers for a display name and must survive one that is dead, hangs or lacks OpenGL.
Result<std::string> drawingDisplay(bool (*canDraw)(const std::string& display));

} // namespace workbench
