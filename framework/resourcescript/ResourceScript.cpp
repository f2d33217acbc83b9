#include "framework/resourcescript/ResourceScript.h"

#include "framework/resourcescript/ScriptTokens.h"
#include "framework/windows/WindowStyles.h"

#include <algorithm>
#include <array>

namespace framework {
namespace {

/// A statement with a control's class and style of its own.
struct Shorthand {
    const wchar_t* keyword;
    const wchar_t* className;
    unsigned style;
    bool hasText;
};
constexpr Shorthand kShorthands[] = {
    {L"LTEXT", L"Static", SS_LEFT | WS_GROUP, true},
    {L"CTEXT", L"Static", SS_CENTER | WS_GROUP, true},
    {L"RTEXT", L"Static", SS_RIGHT | WS_GROUP, true},
    {L"EDITTEXT", L"Edit", ES_LEFT | WS_BORDER | WS_TABSTOP, false},
    {L"PUSHBUTTON", L"Button", BS_PUSHBUTTON | WS_TABSTOP, true},
    {L"DEFPUSHBUTTON", L"Button", BS_DEFPUSHBUTTON | WS_TABSTOP, true},
    {L"CHECKBOX", L"Button", BS_CHECKBOX | WS_TABSTOP, true},
    {L"AUTOCHECKBOX", L"Button", BS_AUTOCHECKBOX | WS_TABSTOP, true},
    {L"RADIOBUTTON", L"Button", BS_RADIOBUTTON | WS_TABSTOP, true},
    {L"AUTORADIOBUTTON", L"Button", BS_AUTORADIOBUTTON | WS_TABSTOP, true},
    {L"GROUPBOX", L"Button", BS_GROUPBOX, true},
    {L"COMBOBOX", L"ComboBox", 0, false},
    {L"LISTBOX", L"ListBox", LBS_NOTIFY | WS_BORDER, false},
};

/// A fault of the script: ends the statement that it is in.
struct ScriptFault {
    std::size_t line;
    std::wstring text;
};

class Reader {
  public:
    Reader(std::wstring_view text, const ScriptSymbols& symbols)
        : tokens_(scriptTokens(text))
        , symbols_(symbols) {}

    ResourceScript read() {
        while (!atEnd()) {
            const std::size_t begin = next_;
            try {
                readStatement();
            } catch (const ScriptFault& fault) {
                script_.problems.push_back(L"line " + std::to_wstring(fault.line) + L": " + fault.text);
                // On with what may be the next dialog.
                next_ = std::max(next_, begin + 1);
                while (!atEnd() && !isDialogAhead())
                    ++next_;
            }
        }
        return std::move(script_);
    }

  private:
    bool atEnd() const { return next_ >= tokens_.size(); }
    const ScriptToken& peek(std::size_t ahead = 0) const {
        static const ScriptToken kEnd{};
        return next_ + ahead < tokens_.size() ? tokens_[next_ + ahead] : kEnd;
    }
    std::size_t line() const { return atEnd() ? (tokens_.empty() ? 1 : tokens_.back().line) : peek().line; }
    [[noreturn]] void fail(const std::wstring& text) const { throw ScriptFault{line(), text}; }
    bool isWord(const wchar_t* word, std::size_t ahead = 0) const {
        return peek(ahead).kind == ScriptToken::kWord && peek(ahead).text == word;
    }
    bool isMark(wchar_t mark) const { return peek().kind == ScriptToken::kMark && peek().text[0] == mark; }
    bool isDialogAhead() const { return isWord(L"DIALOGEX", 1) || isWord(L"DIALOG", 1); }
    bool skipMark(wchar_t mark) {
        if (!isMark(mark)) return false;
        ++next_;
        return true;
    }
    void expectMark(wchar_t mark) {
        if (!skipMark(mark))
            fail(std::wstring(L"\"") + mark + L"\" is missing before \"" + peek().text + L"\"");
    }
    std::wstring takeText() {
        if (peek().kind != ScriptToken::kText)
            fail(L"a text in quotes is missing before \"" + peek().text + L"\"");
        return tokens_[next_++].text;
    }

    unsigned takeValue() {
        const bool negative = skipMark(L'-');
        const ScriptToken& token = peek();
        unsigned value = token.number;
        if (token.kind == ScriptToken::kWord) {
            if (const auto* style = findStyle(token.text))
                value = style->value;
            else if (const auto symbol = symbols_.find(token.text); symbol != symbols_.end())
                value = symbol->second;
            else
                fail(L"nothing defines \"" + token.text + L"\"");
        } else if (token.kind != ScriptToken::kNumber) {
            fail(L"a number is missing before \"" + token.text + L"\"");
        }
        ++next_;
        return negative ? 0U - value : value;
    }

    /// A | NOT B | C: added to and taken from the style that is there.
    void takeStyle(unsigned& style) {
        do {
            const bool off = isWord(L"NOT");
            if (off) ++next_;
            const unsigned value = takeValue();
            style = off ? style & ~value : style | value;
        } while (skipMark(L'|'));
    }

    void takeRect(int (&rect)[4]) {
        for (int i = 0; i < 4; ++i) {
            if (i) expectMark(L',');
            rect[i] = static_cast<int>(takeValue());
        }
    }

    void readStatement() {
        if (isWord(L"LANGUAGE")) {
            next_ += 4; // the word, the language, a comma, the dialect
        } else if (isDialogAhead()) {
            readDialog();
        } else {
            fail(L"\"" + peek().text + L"\" is no statement of the resource scripts that are read here");
        }
    }

    void readDialog() {
        ScriptDialog dialog;
        dialog.line = line();
        dialog.id = takeValue();
        ++next_; // DIALOGEX
        takeRect(dialog.rect);
        dialog.style = WS_POPUP | WS_BORDER | WS_SYSMENU;
        while (!atEnd() && !isWord(L"BEGIN") && !isMark(L'{'))
            readOption(dialog);
        if (atEnd()) fail(L"BEGIN is missing");
        ++next_;
        while (!atEnd() && !isWord(L"END") && !isMark(L'}'))
            dialog.controls.push_back(readControl());
        if (atEnd()) fail(L"END is missing");
        ++next_;
        for (const auto& known : script_.dialogs)
            if (known.id == dialog.id)
                script_.problems.push_back(L"line " + std::to_wstring(dialog.line) + L": the id " +
                                           std::to_wstring(dialog.id) + L" is used by the dialog of line " +
                                           std::to_wstring(known.line));
        script_.dialogs.push_back(std::move(dialog));
    }

    void readOption(ScriptDialog& dialog) {
        if (isWord(L"STYLE")) {
            ++next_;
            dialog.style = 0;
            takeStyle(dialog.style);
        } else if (isWord(L"EXSTYLE")) {
            ++next_;
            takeStyle(dialog.exStyle);
        } else if (isWord(L"CAPTION")) {
            ++next_;
            dialog.title = takeText();
        } else if (isWord(L"FONT")) {
            ++next_;
            takeValue();
            expectMark(L',');
            takeText();
            while (skipMark(L','))
                takeValue();
        } else {
            fail(L"\"" + peek().text + L"\" is no option of a dialog");
        }
    }

    ScriptControl readControl() {
        ScriptControl control;
        control.line = line();
        const auto* shorthand = std::find_if(std::begin(kShorthands), std::end(kShorthands),
                                             [&](const Shorthand& known) { return isWord(known.keyword); });
        const bool general = isWord(L"CONTROL");
        if (shorthand == std::end(kShorthands) && !general)
            fail(L"\"" + peek().text + L"\" is no control of the resource scripts that are read here");
        ++next_;
        control.style = WS_CHILD | WS_VISIBLE;
        if (general || shorthand->hasText) {
            control.text = takeText();
            expectMark(L',');
        }
        control.id = takeValue() & 0xFFFF;
        expectMark(L',');
        if (general) {
            control.className = takeText();
            expectMark(L',');
            takeStyle(control.style);
            expectMark(L',');
        } else {
            control.className = shorthand->className;
            control.style |= shorthand->style;
        }
        takeRect(control.rect);
        if (!general && skipMark(L',')) takeStyle(control.style);
        if (skipMark(L',')) takeStyle(control.exStyle);
        return control;
    }

    std::vector<ScriptToken> tokens_;
    const ScriptSymbols& symbols_;
    std::size_t next_ = 0;
    ResourceScript script_;
};

} // namespace

ResourceScript readResourceScript(std::wstring_view text, const ScriptSymbols& symbols) {
    return Reader(text, symbols).read();
}

} // namespace framework
