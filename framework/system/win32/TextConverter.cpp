#include "framework/system/TextConverter.h"

#include <windows.h>

#include <algorithm>
#include <string>

namespace framework {

namespace {

constexpr std::string_view kReplacementUtf8 = "\xEF\xBF\xBD";

std::size_t utf8Length(unsigned char lead) {
    return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// One character of well-formed UTF-8 in UTF-16; answers how many units it has.
int wideCharacter(std::string_view utf8, wchar_t (&wide)[2]) {
    return ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide, 2);
}

/// The bytes of a character in the code page; empty when it lacks the character. What is only similar to the
/// character does not count: the bytes must lead back to it.
std::string narrowCharacter(const wchar_t* wide, int count, unsigned codePage) {
    char bytes[16];
    const int size = ::WideCharToMultiByte(codePage, 0, wide, count, bytes, sizeof bytes, nullptr, nullptr);
    wchar_t back[4];
    if (size <= 0 || ::MultiByteToWideChar(codePage, 0, bytes, size, back, 4) != count ||
        !std::equal(wide, wide + count, back))
        return {};
    return {bytes, static_cast<std::size_t>(size)};
}

void appendUtf8(std::string& out, const wchar_t* wide, int count) {
    char bytes[16];
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, wide, count, bytes, sizeof bytes, nullptr, nullptr);
    out.append(bytes, static_cast<std::size_t>(std::max(size, 0)));
}

/// How many units the first `size` bytes are as one character; 0 when they are none.
int takeCharacter(std::string_view text, std::size_t size, unsigned codePage, wchar_t (&wide)[4]) {
    if (text.size() < size) return 0;
    const int count =
        ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text.data(), static_cast<int>(size), wide, 4);
    // Two units count as one character only when they are the halves of one.
    if (count == 2 && !IS_SURROGATE_PAIR(wide[0], wide[1])) return 0;
    return count <= 2 ? count : 0;
}

bool keepsAscii(unsigned codePage) {
    for (wchar_t c = 1; c < 127; ++c)
        if (const std::string bytes = narrowCharacter(&c, 1, codePage);
            bytes.size() != 1 || bytes[0] != static_cast<char>(c))
            return false;
    return true;
}

/// Whether there is a converter for the code page used last on this thread.
bool usable(unsigned codePage) {
    thread_local unsigned last = 0;
    thread_local bool works = false;
    if (last != codePage) {
        CPINFO information{};
        last = codePage;
        works = ::IsValidCodePage(codePage) && ::GetCPInfo(codePage, &information) && keepsAscii(codePage);
    }
    return works;
}

} // namespace

bool systemConverts(unsigned codePage) {
    return codePage != 0 && usable(codePage);
}

std::string systemFromUtf8(std::string_view utf8, unsigned codePage, std::size_t& replaced) {
    const bool converts = usable(codePage);
    std::string out;
    while (!utf8.empty()) {
        const auto lead = static_cast<unsigned char>(utf8.front());
        const std::size_t size = std::min(utf8.size(), utf8Length(lead));
        wchar_t wide[2];
        const int count = lead < 0x80 ? 0 : wideCharacter(utf8.substr(0, size), wide);
        const std::string bytes = lead < 0x80         ? std::string(1, utf8.front())
                                  : converts && count ? narrowCharacter(wide, count, codePage)
                                                      : std::string();
        replaced += bytes.empty();
        out += bytes.empty() ? "?" : bytes;
        utf8.remove_prefix(size);
    }
    return out;
}

std::string systemToUtf8(std::string_view text, unsigned codePage) {
    const bool converts = usable(codePage);
    std::string out;
    while (!text.empty()) {
        std::size_t size = 1;
        if (static_cast<unsigned char>(text.front()) < 0x80) {
            out += text.front();
        } else {
            wchar_t wide[4];
            int count = 0;
            constexpr std::size_t kLongest = 4;
            for (; converts && size <= kLongest && !count; ++size)
                count = takeCharacter(text, size, codePage, wide);
            size = count ? size - 1 : 1;
            if (count)
                appendUtf8(out, wide, count);
            else
                out += kReplacementUtf8;
        }
        text.remove_prefix(size);
    }
    return out;
}

} // namespace framework
