#include "framework/text/Format.h"

#include "framework/text/Print.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <span>

namespace framework {

namespace {

/// Larger widths and precisions are cut: the C standard asks for no longer field either.
constexpr int kLargestField = 4095;

/// One conversion of a format: "%", flags, width, precision, length modifiers, letter.
struct Directive {
    bool left = false, plus = false, blank = false, alternate = false, zeros = false;
    int width = 0;
    int precision = -1; ///< negative: not given
    wchar_t letter = 0; ///< zero: the format ended before it
};

/// The arguments in their order.
class Arguments {
  public:
    explicit Arguments(std::span<const FormatArgument> arguments)
        : rest_(arguments) {}

    const FormatArgument* next() {
        if (rest_.empty()) return nullptr;
        const FormatArgument* first = &rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }
    /// For "*"; 0 when the argument is no integer.
    int nextSize() {
        const FormatArgument* argument = next();
        std::int64_t size = 0;
        if (argument && std::holds_alternative<std::int64_t>(*argument))
            size = std::get<std::int64_t>(*argument);
        if (argument && std::holds_alternative<std::uint64_t>(*argument))
            size = static_cast<std::int64_t>(
                std::min<std::uint64_t>(std::get<std::uint64_t>(*argument), kLargestField));
        return static_cast<int>(std::clamp<std::int64_t>(size, -kLargestField, kLargestField));
    }

  private:
    std::span<const FormatArgument> rest_;
};

/// Reads the directive behind a "%" at the front of `text` and takes it away.
class DirectiveReader {
  public:
    DirectiveReader(std::wstring_view& text, Arguments& arguments)
        : text_(text)
        , arguments_(arguments) {}

    Directive read() {
        Directive directive;
        while (readFlag(directive))
            text_.remove_prefix(1);
        directive.width = readSize();
        if (directive.width < 0) {
            directive.left = true;
            directive.width = -directive.width;
        }
        if (front() == L'.') {
            text_.remove_prefix(1);
            directive.precision = readSize();
        }
        skipLength();
        if (text_.empty()) return directive;
        directive.letter = text_.front();
        text_.remove_prefix(1);
        return directive;
    }

  private:
    wchar_t front() const { return text_.empty() ? L'\0' : text_.front(); }

    bool readFlag(Directive& directive) const {
        switch (front()) {
        case L'-':
            return directive.left = true;
        case L'+':
            return directive.plus = true;
        case L' ':
            return directive.blank = true;
        case L'#':
            return directive.alternate = true;
        case L'0':
            return directive.zeros = true;
        default:
            return false;
        }
    }
    int readSize() {
        if (front() == L'*') {
            text_.remove_prefix(1);
            return arguments_.nextSize();
        }
        int size = 0;
        for (; front() >= L'0' && front() <= L'9'; text_.remove_prefix(1))
            size = std::min(size * 10 + static_cast<int>(front() - L'0'), kLargestField);
        return size;
    }
    void skipLength() {
        if (text_.starts_with(L"I64") || text_.starts_with(L"I32")) text_.remove_prefix(3);
        while (!text_.empty() && std::wstring_view(L"hljztLw").find(text_.front()) != std::wstring_view::npos)
            text_.remove_prefix(1);
    }

    std::wstring_view& text_;
    Arguments& arguments_;
};

/// The parts of a printed number: padding goes before the sign, zeros behind it.
struct NumberText {
    std::string sign; ///< sign or "0x"
    std::string digits;
    bool finite = true; ///< infinity and NaN are not padded with zeros
};

void appendPadded(std::wstring& out, const Directive& directive, std::wstring_view text) {
    const auto width = static_cast<std::size_t>(directive.width);
    const std::size_t padding = width > text.size() ? width - text.size() : 0;
    if (!directive.left) out.append(padding, L' ');
    out.append(text);
    if (directive.left) out.append(padding, L' ');
}

void appendNumber(std::wstring& out, const Directive& directive, const NumberText& number, bool zeros) {
    std::wstring text(number.sign.begin(), number.sign.end());
    const std::size_t size = number.sign.size() + number.digits.size();
    const auto width = static_cast<std::size_t>(directive.width);
    if (zeros && !directive.left && number.finite && width > size) text.append(width - size, L'0');
    text.append(number.digits.begin(), number.digits.end());
    appendPadded(out, directive, text);
}

std::string signText(const Directive& directive, bool negative) {
    return negative ? "-" : directive.plus ? "+" : directive.blank ? " " : "";
}

std::string toUpper(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return text;
}

/// Decimal digits to at least the precision; value 0 with precision 0 has none.
std::string decimalDigits(std::uint64_t value, int precision) {
    std::string digits;
    if (value != 0 || precision != 0) appendInteger(digits, value);
    if (precision > static_cast<int>(digits.size()))
        digits.insert(0, static_cast<std::size_t>(precision) - digits.size(), '0');
    return digits;
}

std::string hexadecimalDigits(std::uint64_t value, int precision) {
    std::string digits;
    for (; value != 0; value >>= 4)
        digits += "0123456789abcdef"[value & 15];
    const auto least = static_cast<std::size_t>(precision < 0 ? 1 : precision);
    if (digits.size() < least) digits.append(least - digits.size(), '0');
    std::reverse(digits.begin(), digits.end());
    return digits;
}

/// The value that %u and %x print: a negative number in 32 bits when it fits them, as an int would.
std::uint64_t asUnsigned(const FormatArgument& argument) {
    if (const auto* value = std::get_if<std::uint64_t>(&argument)) return *value;
    const std::int64_t value = std::get<std::int64_t>(argument);
    if (value < 0 && value >= std::numeric_limits<std::int32_t>::min())
        return static_cast<std::uint32_t>(value);
    return static_cast<std::uint64_t>(value);
}

NumberText integerText(const Directive& directive, const FormatArgument& argument) {
    NumberText number;
    if (directive.letter == L'x' || directive.letter == L'X') {
        const std::uint64_t value = asUnsigned(argument);
        number.sign = directive.alternate && value != 0 ? "0x" : "";
        number.digits = hexadecimalDigits(value, directive.precision);
        if (directive.letter == L'X') number = {toUpper(number.sign), toUpper(number.digits), true};
        return number;
    }
    const auto* value = std::get_if<std::int64_t>(&argument);
    const bool isSigned = directive.letter != L'u';
    const bool negative = isSigned && value && *value < 0;
    const std::uint64_t size = negative ? 0 - static_cast<std::uint64_t>(*value) : asUnsigned(argument);
    number.sign = isSigned ? signText(directive, negative) : "";
    number.digits = decimalDigits(size, directive.precision);
    return number;
}

/// The "#" flag: a point always, and the trailing zeros that %g drops.
void completeDigits(std::string& digits, wchar_t letter, int precision) {
    const std::size_t exponent = std::min(digits.find('e'), digits.size());
    std::string mantissa = digits.substr(0, exponent);
    if (mantissa.find('.') == std::string::npos) mantissa += '.';
    if (letter == L'g') {
        // Leading zeros are not significant, except that the value zero counts its first one.
        const std::size_t first = mantissa.find_first_of("123456789");
        std::size_t significant = first == std::string::npos ? mantissa.size() - 1 : 0;
        for (std::size_t i = first; i < mantissa.size(); ++i)
            significant += mantissa[i] != '.' ? 1 : 0;
        const auto wanted = static_cast<std::size_t>(std::max(precision, 1));
        if (significant < wanted) mantissa.append(wanted - significant, '0');
    }
    digits.replace(0, exponent, mantissa);
}

NumberText realText(const Directive& directive, double value) {
    const bool upper = directive.letter >= L'A' && directive.letter <= L'Z';
    const auto letter = static_cast<wchar_t>(upper ? directive.letter - L'A' + L'a' : directive.letter);
    const int precision = directive.precision < 0 ? 6 : directive.precision;
    NumberText number{signText(directive, std::signbit(value)), {}, std::isfinite(value)};
    const double size = std::fabs(value);
    if (letter == L'f')
        appendFixed(number.digits, size, precision);
    else if (letter == L'e')
        appendScientific(number.digits, size, precision);
    else
        appendGeneral(number.digits, size, precision);
    if (directive.alternate && number.finite) completeDigits(number.digits, letter, precision);
    if (upper) number.digits = toUpper(number.digits);
    return number;
}

bool isInteger(const FormatArgument& argument) {
    return std::holds_alternative<std::int64_t>(argument) || std::holds_alternative<std::uint64_t>(argument);
}

/// Prints one argument; false when it is of the wrong kind for the letter.
bool appendArgument(std::wstring& out, const Directive& directive, const FormatArgument& argument) {
    switch (directive.letter) {
    case L'd':
    case L'i':
    case L'u':
    case L'x':
    case L'X':
        if (!isInteger(argument)) return false;
        appendNumber(out, directive, integerText(directive, argument),
                     directive.zeros && directive.precision < 0);
        return true;
    case L'c': {
        if (!isInteger(argument)) return false;
        const auto character = static_cast<wchar_t>(asUnsigned(argument));
        appendPadded(out, directive, std::wstring_view(&character, 1));
        return true;
    }
    case L's': {
        const auto* text = std::get_if<std::wstring_view>(&argument);
        if (!text) return false;
        appendPadded(
            out, directive,
            directive.precision < 0 ? *text : text->substr(0, static_cast<std::size_t>(directive.precision)));
        return true;
    }
    default: {
        const auto* value = std::get_if<double>(&argument);
        if (!value) return false;
        appendNumber(out, directive, realText(directive, *value), directive.zeros);
        return true;
    }
    }
}

} // namespace

std::wstring formatWideArguments(std::wstring_view format, std::initializer_list<FormatArgument> arguments) {
    std::wstring out;
    Arguments rest(std::span(arguments.begin(), arguments.size()));
    while (!format.empty()) {
        const std::size_t percent = std::min(format.find(L'%'), format.size());
        out.append(format.substr(0, percent));
        format.remove_prefix(percent);
        if (format.empty()) break;
        const std::wstring_view whole = format;
        format.remove_prefix(1);
        const Directive directive = DirectiveReader(format, rest).read();
        if (directive.letter == L'%') {
            out += L'%';
        } else if (directive.letter == 0 ||
                   std::wstring_view(L"diuxXcsefgFGE").find(directive.letter) == std::wstring_view::npos) {
            out.append(whole.substr(0, whole.size() - format.size())); // not a directive: text
        } else {
            const FormatArgument* argument = rest.next();
            if (!argument || !appendArgument(out, directive, *argument)) appendPadded(out, directive, L"?");
        }
    }
    return out;
}

} // namespace framework
