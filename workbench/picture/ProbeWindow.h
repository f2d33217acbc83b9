#pragma once

#include <string>

namespace workbench {

/// Whether an OpenGL window opens on the X display. Tried in a forked process, since the drawing library ends
/// the process where it fails.
bool canDrawOn(const std::string& display);

/// Whether an X display of that name answers.
bool displayAnswers(const std::string& display);

} // namespace workbench
