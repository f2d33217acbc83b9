#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace workbench {

struct TomlFault {
    int line = 0;
    std::string message;
};

/// Finds what the TOML parser must not be given: version 3.3 takes for granted that a table header goes on
/// with a name, and that characters beyond ASCII stand in quotes or comments, and its behaviour is undefined
/// where they do not. Neither is TOML.
std::optional<TomlFault> findTomlFault(std::string_view text);

} // namespace workbench
