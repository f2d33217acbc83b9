#pragma once

#include "workbench/import/DeckErrors.h"
#include "workbench/import/Toml.h"

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// Typed access to a table of a project deck. What is missing, of the wrong type or not allowed goes to the
/// list of errors, and the caller gets a harmless value; keys that nobody asked for are errors in the end.
class DeckTable {
  public:
    /// `what` names the table in messages, as "fatigue 'Life'".
    DeckTable(const toml::table& table, std::string what, DeckErrors& errors)
        : table_(table)
        , what_(std::move(what))
        , errors_(errors) {}
    ~DeckTable() { refuseUnknownKeys(); }
    DeckTable(const DeckTable&) = delete;
    DeckTable& operator=(const DeckTable&) = delete;

    int line() const { return lineOf(table_); }
    /// Line of a key's value; the table's when it is not there.
    int line(std::string_view key) const;
    bool has(std::string_view key) const { return table_.contains(key); }
    void rename(std::string what) { what_ = std::move(what); }
    const std::string& what() const { return what_; }
    void fail(std::string_view key, const std::string& message) {
        errors_.add(line(key), what_ + ": " + message);
    }

    /// A text of 1 to 63 characters without control characters.
    std::string requiredName(std::string_view key);
    std::optional<std::string> name(std::string_view key);
    std::optional<std::string> text(std::string_view key);
    /// A finite number, also written as an integer.
    std::optional<double> number(std::string_view key);
    double requiredNumber(std::string_view key);
    std::optional<double> positive(std::string_view key);
    std::optional<std::int64_t> integer(std::string_view key, std::int64_t least, std::int64_t most);
    /// Position of a text among the accepted ones, letter case ignored.
    std::optional<int> choice(std::string_view key, std::span<const std::string> accepted);
    std::optional<std::vector<int>> choices(std::string_view key, std::span<const std::string> accepted);
    std::optional<std::vector<std::string>> names(std::string_view key);
    /// A list of pairs of finite numbers.
    std::vector<std::array<double, 2>> requiredPairs(std::string_view key, const char* pairText);

    /// The tables of [[key]], in order.
    void forEachTable(std::string_view key, const std::function<void(const toml::table&)>& visit);
    /// The table of [key]; null when it is not there.
    const toml::table* subTable(std::string_view key);

    static int lineOf(const toml::node& node) { return static_cast<int>(node.source().begin.line); }

  private:
    const toml::node* find(std::string_view key);
    void wrongType(std::string_view key, const toml::node& found, const char* wanted);
    bool isName(std::string_view key, const std::string& value);
    std::optional<int> positionOf(const toml::node& node, std::string_view key,
                                  std::span<const std::string> accepted);
    void refuseUnknownKeys();

    const toml::table& table_;
    std::string what_;
    DeckErrors& errors_;
    std::vector<std::string> known_;
};

} // namespace workbench
