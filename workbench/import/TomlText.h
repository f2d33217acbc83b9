#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace workbench {

struct TomlFault {
    int line = 0;
    std::string message;
};

/// Finds what the TOML parser is better not given, with the line that its own answer lacks: table headers
/// that do not go on with a name, brackets that do not match, quotes inside of words, and characters beyond
/// ASCII outside of quotes and comments, with which version 3.3 has undefined behaviour. None of it is TOML.
std::optional<TomlFault> findTomlFault(std::string_view text);

} // namespace workbench
