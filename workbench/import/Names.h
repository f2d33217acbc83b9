#pragma once

#include <span>
#include <string>
#include <string_view>

namespace workbench {

/// ASCII letters in upper case; other bytes as they are. Names of solver decks compare this way.
std::string upperCase(std::string_view text);
bool equalIgnoringCase(std::string_view left, std::string_view right);

/// Blanks and tabs cut at both ends.
std::string_view trimmed(std::string_view text);

/// The names in quotes: "'a', 'b' and 'c'"; long lists are cut and say so; "none" without names.
std::string listNames(std::span<const std::string> names);

/// ", did you mean 'x'?" for the nearest of `known`; empty when none is near.
std::string suggestion(std::string_view name, std::span<const std::string> known);

} // namespace workbench
