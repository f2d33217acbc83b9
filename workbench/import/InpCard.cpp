#include "workbench/import/InpCard.h"

#include "workbench/import/Names.h"

#include <charconv>
#include <cmath>

namespace workbench {
namespace {

/// Position of the next comma outside of quotes.
std::size_t findComma(std::string_view text) {
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') quoted = !quoted;
        if (text[i] == ',' && !quoted) return i;
    }
    return std::string_view::npos;
}

std::string withSingleBlanks(std::string_view text) {
    std::string result;
    for (const char c : trimmed(text)) {
        const bool blank = c == ' ' || c == '\t';
        if (blank && !result.empty() && result.back() == ' ') continue;
        result += blank ? ' ' : c;
    }
    return result;
}

std::string withoutBlanks(std::string_view text) {
    std::string result;
    for (const char c : text)
        if (c != ' ' && c != '\t') result += c;
    return result;
}

std::string_view withoutQuotes(std::string_view text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') return text.substr(1, text.size() - 2);
    return text;
}

} // namespace

InpCard parseCard(std::string_view line) {
    InpCard card;
    line.remove_prefix(1);
    bool first = true;
    while (true) {
        const std::size_t comma = findComma(line);
        const std::string_view field = trimmed(line.substr(0, comma));
        if (first) {
            card.title = upperCase(withSingleBlanks(field));
            card.keyword = withoutBlanks(card.title);
        } else if (!field.empty()) {
            const std::size_t equals = field.find('=');
            InpCard::Parameter parameter;
            parameter.name = withoutBlanks(upperCase(field.substr(0, equals)));
            if (equals != std::string_view::npos)
                parameter.value = withoutQuotes(trimmed(field.substr(equals + 1)));
            card.parameters.push_back(std::move(parameter));
        }
        first = false;
        if (comma == std::string_view::npos) return card;
        line.remove_prefix(comma + 1);
    }
}

bool InpFields::next(std::string_view& field) {
    rest_ = trimmed(rest_);
    if (rest_.empty()) return false;
    const std::size_t comma = rest_.find(',');
    field = trimmed(rest_.substr(0, comma));
    rest_.remove_prefix(comma == std::string_view::npos ? rest_.size() : comma + 1);
    return true;
}

std::optional<int> parseInteger(std::string_view field) {
    if (!field.empty() && field.front() == '+') field.remove_prefix(1);
    int value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error != std::errc() || end != field.data() + field.size()) return std::nullopt;
    return value;
}

std::optional<double> parseReal(std::string_view field) {
    if (field.empty()) return 0.0;
    if (field.front() == '+') field.remove_prefix(1);
    double value = 0;
    auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error == std::errc() && end != field.data() + field.size() && (*end == 'D' || *end == 'd')) {
        std::string text(field);
        text[static_cast<std::size_t>(end - field.data())] = 'E';
        if (const std::size_t plus = text.find('+', 1); plus != std::string::npos) text.erase(plus, 1);
        const auto again = std::from_chars(text.data(), text.data() + text.size(), value);
        if (again.ec != std::errc() || again.ptr != text.data() + text.size()) return std::nullopt;
    } else if (error != std::errc() || end != field.data() + field.size()) {
        return std::nullopt;
    }
    if (!std::isfinite(value)) return std::nullopt;
    return value;
}

} // namespace workbench
