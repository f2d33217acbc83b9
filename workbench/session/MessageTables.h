#pragma once

#include "workbench/session/Messages.h"

namespace workbench {

// Each ascending by key.
std::span<const Message> generalMessages(); ///< of several tools, and titles of dialogs
std::span<const Message> combinationMessages();
std::span<const Message> desktopMessages();
std::span<const Message> fatigueMessages();
std::span<const Message> stabilityMessages();

} // namespace workbench
