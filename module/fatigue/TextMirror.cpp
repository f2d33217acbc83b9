#include "module/fatigue/TextMirror.h"

#include "framework/text/LineEnd.h"

#include <locale>
#include <string_view>

namespace fatigue {

TextMirror::TextMirror() {
    stream_.imbue(std::locale::classic());
}

void TextMirror::open(const std::wstring& path) {
    CFileException cause;
    if (!file_.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::typeText, &cause)) throw cause;
    stream_.clear();
}

void TextMirror::abandon() noexcept {
    try {
        file_.Close();
    } catch (const CFileException&) {
        // The first failure is the one to report.
    }
}

std::streamsize TextMirror::Buffer::xsputn(const char* text, std::streamsize count) {
    std::string_view rest(text, static_cast<std::size_t>(count));
    while (!rest.empty()) {
        const std::size_t line = rest.substr(0, rest.find('\n')).size();
        file_.Write(rest.data(), line);
        rest.remove_prefix(line);
        if (rest.empty()) break;
        file_.Write(framework::kLineEnd.data(), framework::kLineEnd.size());
        rest.remove_prefix(1);
    }
    return count;
}

TextMirror::Buffer::int_type TextMirror::Buffer::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    const char one = traits_type::to_char_type(character);
    xsputn(&one, 1);
    return character;
}

} // namespace fatigue
