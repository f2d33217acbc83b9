#include "framework/text/CodePage.h"

#include "framework/system/TextConverter.h"
#include "framework/text/Utf8.h"

namespace framework {

namespace {

unsigned g_hostCodePage = kCodePageUtf8;

std::string utf8Of(std::wstring_view text, std::size_t& replaced) {
    return utf8::convert<char>(text, U'?', replaced);
}

} // namespace

unsigned hostCodePage() {
    return g_hostCodePage;
}

int setHostCodePage(unsigned codePage) {
    if (codePage != kCodePageUtf8 && !systemConverts(codePage)) return 0;
    g_hostCodePage = codePage;
    return 1;
}

std::string wideToMulti(std::wstring_view text, unsigned codePage, std::size_t* replaced) {
    std::size_t lost = 0;
    std::string out = utf8Of(text, lost);
    // ASCII is the same in every code page that can be set.
    if (codePage != kCodePageUtf8 && utf8::asciiPrefix(std::string_view(out)) != out.size())
        out = systemFromUtf8(out, codePage, lost);
    if (replaced) *replaced = lost;
    return out;
}

std::wstring multiToWide(std::string_view text, unsigned codePage) {
    if (codePage == kCodePageUtf8 || utf8::asciiPrefix(text) == text.size()) return fromUtf8(text);
    return fromUtf8(systemToUtf8(text, codePage));
}

std::string toUtf8(std::wstring_view text) {
    std::size_t replaced = 0;
    return utf8Of(text, replaced);
}

std::wstring fromUtf8(std::string_view text) {
    std::size_t replaced = 0;
    return utf8::convert<wchar_t>(text, utf8::kReplacement, replaced);
}

} // namespace framework
