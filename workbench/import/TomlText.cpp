#include "workbench/import/TomlText.h"

#include <algorithm>

namespace workbench {
namespace {

bool beginsKey(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '"' || c == '\'';
}

/// Walks over a TOML text and keeps track of strings, comments, brackets and lines.
class Scanner {
  public:
    explicit Scanner(std::string_view text)
        : text_(text) {
        if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3; // byte order mark
    }

    std::optional<TomlFault> run() {
        while (at_ < text_.size()) {
            const char c = text_[at_];
            if (c == '\n') {
                endLine();
            } else if (c == ' ' || c == '\t' || c == '\r') {
                ++at_;
            } else if (c == '#') {
                at_ = std::min(text_.find('\n', at_), text_.size());
            } else if (static_cast<unsigned char>(c) >= 0x80) {
                return TomlFault{line_, "a character beyond ASCII stands outside of quotes"};
            } else if (c == '[' && statementBegins_) {
                if (!passHeader()) return TomlFault{line_, "the name of a table is missing behind '['"};
            } else {
                statementBegins_ = false;
                if ((c == '"' || c == '\'') && !mayBeginString())
                    return TomlFault{line_, "a quote stands inside a word"};
                if (c == '"' || c == '\'')
                    passString(c);
                else if (!passOther(c))
                    return TomlFault{line_, std::string("'") + c + "' closes nothing that is open"};
            }
        }
        return std::nullopt;
    }

  private:
    void endLine() {
        ++at_;
        ++line_;
        inHeader_ = false;
        if (open_.empty()) statementBegins_ = true;
    }

    bool passHeader() {
        statementBegins_ = false;
        inHeader_ = true;
        ++at_;
        if (at_ < text_.size() && text_[at_] == '[') ++at_;
        at_ = std::min(text_.find_first_not_of(" \t", at_), text_.size());
        return at_ < text_.size() && beginsKey(text_[at_]);
    }

    bool passOther(char c) {
        ++at_;
        if (inHeader_) return true;
        if (c == '[' || c == '{') open_ += c;
        if (c != ']' && c != '}') return true;
        if (open_.empty() || open_.back() != (c == ']' ? '[' : '{')) return false;
        open_.pop_back();
        return true;
    }

    /// Whether the character before leaves room for a key or value.
    bool mayBeginString() const {
        return at_ == 0 || std::string_view(" \t\n=,.[{").find(text_[at_ - 1]) != std::string_view::npos;
    }

    /// Passes a string; one of a single line that is not closed ends with the line.
    void passString(char quote) {
        const bool isLong = text_.substr(at_).starts_with(std::string(3, quote));
        at_ += isLong ? 3 : 1;
        while (at_ < text_.size()) {
            if (text_[at_] == '\n') {
                if (!isLong) return;
                ++line_;
            }
            if (text_[at_] == '\\' && quote == '"' && at_ + 1 < text_.size() && text_[at_ + 1] != '\n') {
                at_ += 2;
            } else if (text_[at_] == quote &&
                       (!isLong || text_.substr(at_).starts_with(std::string(3, quote)))) {
                at_ += isLong ? 3 : 1;
                return;
            } else {
                ++at_;
            }
        }
    }

    std::string_view text_;
    std::size_t at_ = 0;
    int line_ = 1;
    std::string open_; ///< brackets of values that are not closed yet
    bool inHeader_ = false;
    bool statementBegins_ = true;
};

} // namespace

std::optional<TomlFault> findTomlFault(std::string_view text) {
    return Scanner(text).run();
}

} // namespace workbench
