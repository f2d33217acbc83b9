#pragma once

#include "framework/Export.h"

#include <functional>
#include <string>

namespace framework {

/// Where causes go that nobody handles, such as an exception from a message handler. Standard error unless
/// set; an empty function sets it back.
VEXA_API void setErrorOutput(std::function<void(const std::wstring&)> output);
VEXA_API void reportError(const std::wstring& text);

/// Reports the exception that is being handled: call it inside a catch block.
void reportException() noexcept;

} // namespace framework
