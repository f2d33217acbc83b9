#include "framework/text/Print.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace framework {

namespace {

// The largest double has 309 digits before the point.
constexpr std::size_t kIntegerDigits = 320;
constexpr int kShortDecimals = 64;

void appendReal(std::string& out, double value, std::chars_format format, int precision) {
    precision = std::max(precision, 0);
    if (precision <= kShortDecimals) {
        std::array<char, kIntegerDigits + kShortDecimals> buffer;
        const auto end =
            std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision).ptr;
        out.append(buffer.data(), end);
        return;
    }
    std::string buffer(kIntegerDigits + static_cast<std::size_t>(precision), '\0');
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision).ptr;
    out.append(buffer.data(), end);
}

template <class Integer>
void appendAnyInteger(std::string& out, Integer value) {
    std::array<char, 24> buffer;
    out.append(buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr);
}

} // namespace

void appendInteger(std::string& out, std::int64_t value) {
    appendAnyInteger(out, value);
}
void appendInteger(std::string& out, std::uint64_t value) {
    appendAnyInteger(out, value);
}

void appendGeneral(std::string& out, double value, int digits) {
    appendReal(out, value, std::chars_format::general, digits);
}
void appendScientific(std::string& out, double value, int decimals) {
    appendReal(out, value, std::chars_format::scientific, decimals);
}
void appendFixed(std::string& out, double value, int decimals) {
    appendReal(out, value, std::chars_format::fixed, decimals);
}

} // namespace framework
