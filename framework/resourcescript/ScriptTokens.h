#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace framework {

/// A word, a number, a text in quotes or a mark of a resource script.
struct ScriptToken {
    enum Kind { kEnd, kWord, kNumber, kText, kMark };
    Kind kind = kEnd;
    std::wstring text = L"the end";
    unsigned number = 0;
    std::size_t line = 0;
};

/// The script cut up. Comments and lines that begin with "#" are left out; a text that does not end in its
/// line ends there.
std::vector<ScriptToken> scriptTokens(std::wstring_view text);

/// A style by the name that scripts use; null when there is none of that name.
struct NamedStyle {
    const wchar_t* name;
    unsigned value;
};
const NamedStyle* findStyle(std::wstring_view name);

} // namespace framework
