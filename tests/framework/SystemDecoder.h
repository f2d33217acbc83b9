#pragma once

#include <string>

/// UTF-8 as the system's own decoder understands it, one replacement for each byte that it refuses.
std::u32string decodedBySystem(std::string text);
