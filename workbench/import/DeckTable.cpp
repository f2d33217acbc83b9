#include "workbench/import/DeckTable.h"

#include "workbench/import/Names.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace workbench {
namespace {

/// A value as the deck's author wrote it, cut where it is long.
std::string shown(const toml::node& node) {
    if (node.is_table()) return "a table";
    if (node.is_array()) return "a list";
    if (const auto text = node.value_exact<std::string>()) return "'" + text->substr(0, 80) + "'";
    if (const auto flag = node.value_exact<bool>()) return *flag ? "true" : "false";
    std::ostringstream out;
    out.imbue(std::locale::classic());
    node.visit([&](const auto& value) {
        if constexpr (toml::is_value<decltype(value)>) out << value.get();
    });
    return out.str();
}

/// Number of UTF-16 units of UTF-8 text, which is how the records count characters.
std::size_t lengthInUnits(std::string_view text) {
    std::size_t units = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
    }
    return units;
}

constexpr std::size_t kLongestName = 63;

} // namespace

int DeckTable::line(std::string_view key) const {
    const toml::node* node = table_.get(key);
    return lineOf(node && lineOf(*node) > 0 ? *node : static_cast<const toml::node&>(table_));
}

const toml::node* DeckTable::find(std::string_view key) {
    known_.emplace_back(key);
    return table_.get(key);
}

void DeckTable::wrongType(std::string_view key, const toml::node& found, const char* wanted) {
    fail(key, std::string(key) + " is " + shown(found) + "; it must be " + wanted);
}

bool DeckTable::isName(std::string_view key, const std::string& value) {
    const bool control = std::any_of(
        value.begin(), value.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
    if (trimmed(value).empty())
        fail(key, std::string(key) + " is empty");
    else if (control)
        fail(key, std::string(key) + " holds control characters");
    else if (lengthInUnits(value) > kLongestName)
        fail(key, std::string(key) + " '" + value.substr(0, 80) + "' is longer than " +
                      std::to_string(kLongestName) + " characters");
    else
        return true;
    return false;
}

std::optional<std::string> DeckTable::text(std::string_view key) {
    const toml::node* node = find(key);
    if (!node) return std::nullopt;
    if (auto value = node->value_exact<std::string>()) return value;
    wrongType(key, *node, "a text");
    return std::nullopt;
}

std::optional<std::string> DeckTable::name(std::string_view key) {
    auto value = text(key);
    if (!value || !isName(key, *value)) return std::nullopt;
    return value;
}

std::string DeckTable::requiredName(std::string_view key) {
    if (!has(key)) {
        find(key);
        fail(key, std::string(key) + " is missing");
        return {};
    }
    return name(key).value_or(std::string());
}

std::optional<double> DeckTable::number(std::string_view key) {
    const toml::node* node = find(key);
    if (!node) return std::nullopt;
    const auto value = node->is_number() ? node->value<double>() : std::nullopt;
    if (value && std::isfinite(*value)) return value;
    wrongType(key, *node, "a finite number");
    return std::nullopt;
}

double DeckTable::requiredNumber(std::string_view key) {
    if (!has(key)) fail(key, std::string(key) + " is missing");
    return number(key).value_or(0);
}

std::optional<double> DeckTable::positive(std::string_view key) {
    const auto value = number(key);
    if (!value || *value > 0) return value;
    fail(key, std::string(key) + " is " + shown(*table_.get(key)) + "; it must be greater than 0");
    return std::nullopt;
}

std::optional<std::int64_t> DeckTable::integer(std::string_view key, std::int64_t least, std::int64_t most) {
    const toml::node* node = find(key);
    if (!node) return std::nullopt;
    const auto value = node->value_exact<std::int64_t>();
    if (value && *value >= least && *value <= most) return value;
    wrongType(key, *node,
              ("a whole number from " + std::to_string(least) + " to " + std::to_string(most)).c_str());
    return std::nullopt;
}

std::optional<int> DeckTable::positionOf(const toml::node& node, std::string_view key,
                                         std::span<const std::string> accepted) {
    const auto value = node.value_exact<std::string>();
    if (value)
        for (std::size_t i = 0; i < accepted.size(); ++i)
            if (equalIgnoringCase(*value, accepted[i])) return static_cast<int>(i);
    fail(key, std::string(key) + " is " + shown(node) +
                  (value ? suggestion(*value, accepted) : std::string()) + "; accepted are " +
                  listNames(accepted));
    return std::nullopt;
}

std::optional<int> DeckTable::choice(std::string_view key, std::span<const std::string> accepted) {
    const toml::node* node = find(key);
    return node ? positionOf(*node, key, accepted) : std::nullopt;
}

std::optional<std::vector<int>> DeckTable::choices(std::string_view key,
                                                   std::span<const std::string> accepted) {
    const toml::node* node = find(key);
    if (!node) return std::nullopt;
    const toml::array* list = node->as_array();
    if (!list || list->empty()) {
        wrongType(key, *node, ("a list of at least one of " + listNames(accepted)).c_str());
        return std::nullopt;
    }
    std::vector<int> result;
    for (const toml::node& item : *list) {
        const auto position = positionOf(item, key, accepted);
        if (!position) return std::nullopt;
        if (std::find(result.begin(), result.end(), *position) != result.end())
            fail(key, std::string(key) + " lists " + shown(item) + " twice");
        result.push_back(*position);
    }
    return result;
}

std::optional<std::vector<std::string>> DeckTable::names(std::string_view key) {
    const toml::node* node = find(key);
    if (!node) return std::nullopt;
    const toml::array* list = node->as_array();
    std::vector<std::string> result;
    bool good = list && !list->empty();
    if (list)
        for (const toml::node& item : *list) {
            const auto value = item.value_exact<std::string>();
            good = good && value;
            if (value) result.push_back(*value);
        }
    if (!good) {
        wrongType(key, *node, "a list of names in quotes");
        return std::nullopt;
    }
    for (std::size_t i = 0; i < result.size(); ++i) {
        if (!isName(key, result[i])) return std::nullopt;
        if (std::find(result.begin(), result.begin() + static_cast<std::ptrdiff_t>(i), result[i]) !=
            result.begin() + static_cast<std::ptrdiff_t>(i))
            fail(key, std::string(key) + " names '" + result[i] + "' twice");
    }
    return result;
}

std::vector<std::array<double, 2>> DeckTable::requiredPairs(std::string_view key, const char* pairText) {
    const toml::node* node = find(key);
    std::vector<std::array<double, 2>> result;
    if (!node) {
        fail(key, std::string(key) + " is missing; it must be a list of " + pairText);
        return result;
    }
    const toml::array* list = node->as_array();
    if (!list || list->empty()) {
        wrongType(key, *node, (std::string("a list of ") + pairText).c_str());
        return result;
    }
    for (const toml::node& item : *list) {
        const toml::array* pair = item.as_array();
        std::array<double, 2> values{};
        bool good = pair && pair->size() == 2;
        for (std::size_t i = 0; good && i < 2; ++i) {
            const toml::node& entry = *pair->get(i);
            const auto value = entry.is_number() ? entry.value<double>() : std::nullopt;
            good = value && std::isfinite(*value);
            if (good) values[i] = *value;
        }
        if (!good) {
            errors_.add(lineOf(item), what_ + ": entry " + std::to_string(result.size() + 1) + " of " +
                                          std::string(key) + " is no pair of finite numbers " + pairText);
            return {};
        }
        result.push_back(values);
    }
    return result;
}

void DeckTable::forEachTable(std::string_view key, const std::function<void(const toml::table&)>& visit) {
    const toml::node* node = find(key);
    if (!node) return;
    const toml::array* list = node->as_array();
    if (!list || !list->is_array_of_tables()) {
        wrongType(key, *node, ("a list of tables, each begun by [[" + std::string(key) + "]]").c_str());
        return;
    }
    for (const toml::node& item : *list)
        visit(*item.as_table());
}

const toml::table* DeckTable::subTable(std::string_view key) {
    const toml::node* node = find(key);
    if (node && !node->is_table())
        wrongType(key, *node, ("a table, begun by [" + std::string(key) + "]").c_str());
    return node ? node->as_table() : nullptr;
}

void DeckTable::refuseUnknownKeys() {
    std::sort(known_.begin(), known_.end());
    known_.erase(std::unique(known_.begin(), known_.end()), known_.end());
    for (const auto& [key, node] : table_) {
        const std::string name(key.str());
        if (std::binary_search(known_.begin(), known_.end(), name)) continue;
        const int where = static_cast<int>(key.source().begin.line);
        const std::string near = suggestion(name, known_);
        errors_.add(where > 0 ? where : line(), what_ + ": the key '" + name.substr(0, 80) +
                                                    "' is not known" + (near.empty() ? ";" : near) +
                                                    " known keys are " + listNames(known_));
    }
}

} // namespace workbench
