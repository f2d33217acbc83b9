#include "workbench/cli/ResultNames.h"

#include <charconv>

namespace workbench::cli {

std::optional<std::size_t> asNumber(const std::string& text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

CPOHVCase* stepOf(const std::vector<CPOHVCase*>& steps, const std::string& text) {
    if (CPOHVCase* named = byName(steps, text)) return named;
    const auto number = asNumber(text);
    return number && *number >= 1 && *number <= steps.size() ? steps[*number - 1] : nullptr;
}

} // namespace workbench::cli
