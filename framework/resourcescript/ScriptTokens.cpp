#include "framework/resourcescript/ScriptTokens.h"

#include <algorithm>

namespace framework {
namespace {

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}
bool isWordCharacter(wchar_t c) {
    return isDigit(c) || c == L'_' || (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

int hexDigit(wchar_t c) {
    if (isDigit(c)) return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    return c >= L'A' && c <= L'F' ? c - L'A' + 10 : -1;
}

unsigned numberOf(const std::wstring& text) {
    const bool hex = text.starts_with(L"0x") || text.starts_with(L"0X");
    unsigned value = 0;
    for (std::size_t i = hex ? 2 : 0; i < text.size(); ++i) {
        const int digit = hex ? hexDigit(text[i]) : isDigit(text[i]) ? text[i] - L'0' : -1;
        if (digit < 0) break; // a suffix as L or U
        value = value * (hex ? 16U : 10U) + static_cast<unsigned>(digit);
    }
    return value;
}

class Cutter {
  public:
    explicit Cutter(std::wstring_view text)
        : text_(text) {}

    std::vector<ScriptToken> cut() {
        while (at_ < text_.size())
            step();
        return std::move(tokens_);
    }

  private:
    bool ahead(std::wstring_view what) const { return text_.substr(at_, what.size()) == what; }
    void skipLine() {
        while (at_ < text_.size() && text_[at_] != L'\n')
            ++at_;
    }
    void add(ScriptToken::Kind kind, std::wstring text) {
        const unsigned number = kind == ScriptToken::kNumber ? numberOf(text) : 0;
        tokens_.push_back({kind, std::move(text), number, line_});
        lineBegins_ = false;
    }

    void step() {
        const wchar_t c = text_[at_];
        if (c == L'\n') {
            ++line_;
            lineBegins_ = true;
            ++at_;
        } else if (c == L' ' || c == L'\t' || c == L'\r' || c == 0xFEFF) {
            ++at_;
        } else if (ahead(L"//") || (c == L'#' && lineBegins_)) {
            skipLine();
        } else if (ahead(L"/*")) {
            skipComment();
        } else if (c == L'"' || ahead(L"L\"")) {
            at_ += c == L'L' ? 2 : 1;
            cutText();
        } else if (isWordCharacter(c)) {
            std::wstring word;
            while (at_ < text_.size() && isWordCharacter(text_[at_]))
                word += text_[at_++];
            add(isDigit(c) ? ScriptToken::kNumber : ScriptToken::kWord, std::move(word));
        } else {
            add(ScriptToken::kMark, std::wstring(1, c));
            ++at_;
        }
    }

    void skipComment() {
        for (at_ += 2; at_ < text_.size() && !ahead(L"*/"); ++at_)
            if (text_[at_] == L'\n') ++line_;
        at_ = std::min(at_ + 2, text_.size());
    }

    void cutText() {
        std::wstring text;
        while (at_ < text_.size() && text_[at_] != L'\n') {
            const wchar_t c = text_[at_++];
            if (c == L'"') {
                if (!(at_ < text_.size() && text_[at_] == L'"')) break;
                ++at_;
            }
            text += c == L'\\' ? escaped() : c;
        }
        add(ScriptToken::kText, std::move(text));
    }

    wchar_t escaped() {
        const wchar_t c = at_ < text_.size() ? text_[at_++] : L'\\';
        return c == L'n' ? L'\n' : c == L't' ? L'\t' : c == L'r' ? L'\r' : c;
    }

    std::wstring_view text_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
    bool lineBegins_ = true;
    std::vector<ScriptToken> tokens_;
};

} // namespace

std::vector<ScriptToken> scriptTokens(std::wstring_view text) {
    return Cutter(text).cut();
}

} // namespace framework
