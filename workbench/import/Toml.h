#pragma once

/// toml++ as headers, with its checks on in every build. Version 3.3 states them as assumptions to the
/// compiler when NDEBUG is set, and there are texts that break them; here such a text ends the parsing with
/// an exception.

namespace workbench {
struct TomlCheckFailed {};
} // namespace workbench

#define TOML_HEADER_ONLY 1
#define TOML_ASSERT(expression) ((expression) ? void() : throw workbench::TomlCheckFailed())
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpragmas"
#pragma GCC diagnostic ignored "-Wunknown-warning-option"
#pragma GCC diagnostic ignored "-Wterminate" // checks in noexcept functions, which are no part of the parser
#pragma push_macro("NDEBUG")
#undef NDEBUG
#include <toml++/toml.h>
#pragma pop_macro("NDEBUG")
#pragma GCC diagnostic pop
#include <cassert> // as NDEBUG has it
