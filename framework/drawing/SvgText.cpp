#include "framework/drawing/SvgText.h"

#include "framework/text/Print.h"
#include "framework/text/Utf8.h"

#include <cmath>

namespace framework::svg {

void appendNumber(std::string& out, double value, int decimals) {
    if (!std::isfinite(value)) value = 0;
    const std::size_t begin = out.size();
    appendFixed(out, value, decimals);
    if (out.find('.', begin) != std::string::npos) {
        while (out.back() == '0')
            out.pop_back();
        if (out.back() == '.') out.pop_back();
    }
    if (out.compare(begin, std::string::npos, "-0") == 0) out.erase(begin, 1);
}

void appendColor(std::string& out, COLORREF color) {
    constexpr char kDigits[] = "0123456789abcdef";
    out += '#';
    for (const int part : {GetRValue(color), GetGValue(color), GetBValue(color)}) {
        out += kDigits[part >> 4];
        out += kDigits[part & 15];
    }
}

void appendText(std::string& out, std::wstring_view text) {
    while (!text.empty()) {
        const char32_t c = utf8::take(text);
        const bool allowed = c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xFFFE) ||
                             (c >= 0x10000 && c <= 0x10FFFF);
        if (!allowed)
            utf8::append(out, utf8::kReplacement);
        else if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '"')
            out += "&quot;";
        else
            utf8::append(out, c);
    }
}

} // namespace framework::svg
