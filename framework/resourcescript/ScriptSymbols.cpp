#include "framework/resourcescript/ResourceScript.h"
#include "framework/resourcescript/ScriptTokens.h"

#include <algorithm>

namespace framework {
namespace {

/// Calls `use` for the tokens of every line that begins with "#" and the given word, without both.
template <class Use>
void eachDirective(std::wstring_view text, const wchar_t* word, Use use) {
    while (!text.empty()) {
        const auto end = std::min(text.find(L'\n'), text.size());
        std::wstring_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto mark = line.find_first_not_of(L" \t\xFEFF");
        if (mark == std::wstring_view::npos || line[mark] != L'#') continue;
        const auto tokens = scriptTokens(line.substr(mark + 1));
        if (tokens.size() > 1 && tokens[0].text == word) use(tokens);
    }
}

} // namespace

void readSymbols(std::wstring_view header, ScriptSymbols& symbols) {
    eachDirective(header, L"define", [&](const std::vector<ScriptToken>& tokens) {
        if (tokens.size() < 3) return;
        const auto known = symbols.find(tokens[2].text);
        if (tokens[2].kind == ScriptToken::kNumber)
            symbols[tokens[1].text] = tokens[2].number;
        else if (tokens[2].text == L"-" && tokens.size() > 3)
            symbols[tokens[1].text] = 0U - tokens[3].number;
        else if (known != symbols.end())
            symbols[tokens[1].text] = known->second;
    });
}

std::vector<std::wstring> includedHeaders(std::wstring_view text) {
    std::vector<std::wstring> names;
    eachDirective(text, L"include", [&](const std::vector<ScriptToken>& tokens) {
        if (tokens[1].kind == ScriptToken::kText) names.push_back(tokens[1].text);
    });
    return names;
}

} // namespace framework
