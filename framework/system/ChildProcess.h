#pragma once

#include "framework/system/Process.h"

namespace framework {

/// Starts the program by the system's means and waits for it. Empty when it could not be started, then with
/// the system's error number in `error`, and when the system gave up waiting.
std::optional<ProcessEnd> runChild(const ProcessRequest& request, int& error);

} // namespace framework
