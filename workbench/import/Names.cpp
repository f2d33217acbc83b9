#include "workbench/import/Names.h"

#include <algorithm>
#include <vector>

namespace workbench {
namespace {

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Edit distance, letter case ignored.
std::size_t distance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> row(right.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j)
        row[j] = j;
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < right.size(); ++j) {
            const std::size_t replaced = diagonal + (upper(left[i]) == upper(right[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

std::string upperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), upper);
    return result;
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return upper(a) == upper(b); });
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string listNames(std::span<const std::string> names) {
    constexpr std::size_t kMost = 12;
    if (names.empty()) return "none";
    const std::size_t shown = std::min(names.size(), kMost);
    std::string text;
    for (std::size_t i = 0; i < shown; ++i) {
        if (i > 0) text += i + 1 == names.size() ? " and " : ", ";
        text += "'" + names[i] + "'";
    }
    if (shown < names.size()) text += " and " + std::to_string(names.size() - shown) + " more";
    return text;
}

std::string suggestion(std::string_view name, std::span<const std::string> known) {
    constexpr std::size_t kLongest = 64; // longer names are not typing errors, and the distance is quadratic
    if (name.empty() || name.size() > kLongest) return {};
    std::size_t best = (name.size() < 4 ? 1 : std::max<std::size_t>(2, name.size() / 3)) +
                       1; // letters swapped are two edits
    const std::string* nearest = nullptr;
    for (const std::string& candidate : known) {
        if (candidate.size() > kLongest) continue;
        const std::size_t edits = distance(name, candidate);
        if (edits < best) {
            best = edits;
            nearest = &candidate;
        }
    }
    return nearest ? ", did you mean '" + *nearest + "'?" : std::string();
}

} // namespace workbench
