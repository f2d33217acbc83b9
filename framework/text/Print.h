#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <string>

/// Numbers as text at the end of a narrow string, in the C locale and without allocation of their own.
/// Exponents have at least two digits on every platform.
namespace framework {

VEXA_API void appendInteger(std::string& out, std::int64_t value);
VEXA_API void appendInteger(std::string& out, std::uint64_t value);
inline void appendInteger(std::string& out, int value) {
    appendInteger(out, std::int64_t{value});
}

/// As "%.*g"; with six digits also what a stream prints by default.
VEXA_API void appendGeneral(std::string& out, double value, int digits = 6);
/// As "%.*e".
VEXA_API void appendScientific(std::string& out, double value, int decimals = 6);
/// As "%.*f".
VEXA_API void appendFixed(std::string& out, double value, int decimals = 6);

} // namespace framework
