#include "host/chart/SvgText.h"

#include "framework/text/CodePage.h"
#include "framework/text/Print.h"

namespace tqx::frx {

std::string svgNumber(double value) {
    std::string text;
    framework::appendFixed(text, value, 2);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text == "-0" ? "0" : text;
}

std::string svgColor(std::uint32_t color) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "#";
    for (const unsigned shift : {4U, 0U, 12U, 8U, 20U, 16U})
        text += kDigits[color >> shift & 0xF];
    return text;
}

std::string svgEscaped(const std::wstring& text) {
    std::wstring safe = text;
    for (wchar_t& c : safe)
        if ((c < L' ' && c != L'\t' && c != L'\n' && c != L'\r') || c == 0xFFFE || c == 0xFFFF) c = 0xFFFD;
    std::string escaped;
    for (const char c : framework::toUtf8(safe)) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

} // namespace tqx::frx
