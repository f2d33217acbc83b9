#pragma once

#include "framework/Export.h"

namespace framework {

/// Keeps the library that holds `address` in the process until it ends, however often it is unloaded: what it
/// has registered stays known. Zero when the system refuses, or no library holds the address.
VEXA_API int keepLibrary(const void* address);

} // namespace framework
