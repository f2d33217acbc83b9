#include "framework/system/TextConverter.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>

namespace framework {

namespace {

constexpr std::string_view kReplacementUtf8 = "\xEF\xBF\xBD";

std::string converterName(unsigned codePage) {
    // The numbers whose encodings are not known to every system as "CP" and the number.
    if (codePage >= 28591 && codePage <= 28605) return "ISO-8859-" + std::to_string(codePage - 28590);
    switch (codePage) {
    case 20127:
        return "US-ASCII";
    case 20866:
        return "KOI8-R";
    case 51949:
        return "EUC-KR";
    case 54936:
        return "GB18030";
    default:
        return "CP" + std::to_string(codePage);
    }
}

/// One direction of a conversion; closed with the object.
class Converter {
  public:
    Converter(const std::string& to, const std::string& from)
        : handle_(::iconv_open(to.c_str(), from.c_str())) {}
    ~Converter() {
        if (isOpen()) ::iconv_close(handle_);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool isOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    /// Converts all of `text`; where the converter stops, `replace(rest, out)` puts something in its place
    /// and answers how many bytes of the input it stands for (at least one).
    template <class Replace>
    std::string convert(std::string_view text, Replace replace) {
        std::string out;
        out.reserve(text.size() + text.size() / 2);
        ::iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        while (!text.empty()) {
            const int error = convertSome(text, out);
            if (error == EILSEQ || error == EINVAL) text.remove_prefix(replace(text, out));
        }
        convertSome(text, out); // the return to the initial state, if the encoding has states
        return out;
    }

  private:
    /// Converts up to one block of output; the error number where it stopped, 0 at the end of the input.
    int convertSome(std::string_view& text, std::string& out) {
        std::array<char, 4096> block;
        char* in = const_cast<char*>(text.data());
        std::size_t inLeft = text.size();
        char* to = block.data();
        std::size_t toLeft = block.size();
        const bool flush = text.empty();
        const std::size_t result =
            ::iconv(handle_, flush ? nullptr : &in, flush ? nullptr : &inLeft, &to, &toLeft);
        const int error = result == static_cast<std::size_t>(-1) ? errno : 0;
        out.append(block.data(), block.size() - toLeft);
        text.remove_prefix(text.size() - inLeft);
        return error;
    }

    iconv_t handle_;
};

/// Both directions of a code page.
struct ConverterPair {
    explicit ConverterPair(unsigned page)
        : codePage(page)
        , fromUtf8(converterName(page), "UTF-8")
        , toUtf8("UTF-8", converterName(page)) {}
    bool isOpen() const { return fromUtf8.isOpen() && toUtf8.isOpen(); }

    unsigned codePage;
    Converter fromUtf8;
    Converter toUtf8;
};

std::size_t utf8Length(unsigned char lead) {
    return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

std::string convertFromUtf8(ConverterPair& pair, std::string_view utf8, std::size_t& replaced) {
    return pair.fromUtf8.convert(utf8, [&](std::string_view rest, std::string& out) {
        out += '?';
        ++replaced;
        return std::min(rest.size(), utf8Length(static_cast<unsigned char>(rest.front())));
    });
}

std::string convertToUtf8(ConverterPair& pair, std::string_view text) {
    return pair.toUtf8.convert(text, [](std::string_view, std::string& out) {
        out += kReplacementUtf8;
        return std::size_t{1};
    });
}

bool keepsAscii(ConverterPair& pair) {
    std::string ascii;
    for (char c = 0; c < 127; ++c)
        ascii += c;
    std::size_t replaced = 0;
    return convertFromUtf8(pair, ascii, replaced) == ascii && convertToUtf8(pair, ascii) == ascii;
}

/// The converters of the code page used last on this thread (opening them is slow); null when there are none.
ConverterPair* converters(unsigned codePage) {
    thread_local std::unique_ptr<ConverterPair> last;
    thread_local bool usable = false;
    if (!last || last->codePage != codePage) {
        last = std::make_unique<ConverterPair>(codePage);
        usable = last->isOpen() && keepsAscii(*last);
    }
    return usable ? last.get() : nullptr;
}

} // namespace

bool systemConverts(unsigned codePage) {
    return converters(codePage) != nullptr;
}

std::string systemFromUtf8(std::string_view utf8, unsigned codePage, std::size_t& replaced) {
    if (ConverterPair* pair = converters(codePage)) return convertFromUtf8(*pair, utf8, replaced);
    std::string out;
    while (!utf8.empty()) {
        const auto lead = static_cast<unsigned char>(utf8.front());
        if (lead >= 0x80) ++replaced;
        out += lead < 0x80 ? utf8.front() : '?';
        utf8.remove_prefix(std::min(utf8.size(), utf8Length(lead)));
    }
    return out;
}

std::string systemToUtf8(std::string_view text, unsigned codePage) {
    if (ConverterPair* pair = converters(codePage)) return convertToUtf8(*pair, text);
    std::string out;
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x80)
            out += c;
        else
            out += kReplacementUtf8;
    }
    return out;
}

} // namespace framework
