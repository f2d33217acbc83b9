#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace framework {

/// A control, and below a dialog, as a resource script describes it; dialog units.
struct ScriptControl {
    std::wstring className;
    std::wstring text;
    unsigned id = 0;
    unsigned style = 0;
    unsigned exStyle = 0;
    int rect[4] = {}; ///< x, y, width, height
    std::size_t line = 0;
};

struct ScriptDialog {
    std::wstring title;
    unsigned id = 0;
    unsigned style = 0;
    unsigned exStyle = 0;
    int rect[4] = {};
    std::vector<ScriptControl> controls;
    std::size_t line = 0;
};

/// Numbers that names of headers stand for.
using ScriptSymbols = std::map<std::wstring, unsigned, std::less<>>;

/// Takes "#define NAME number" from a header's text; everything else of it does not matter.
void readSymbols(std::wstring_view header, ScriptSymbols& symbols);

/// What a script says; in `problems` one sentence for each fault, with its line. docs/resource-script.md
/// describes the part of the language that is read. `symbols`: of the headers it includes.
struct ResourceScript {
    std::vector<ScriptDialog> dialogs;
    std::vector<std::wstring> problems;
};
ResourceScript readResourceScript(std::wstring_view text, const ScriptSymbols& symbols);

/// Names in #include "..." lines, in order.
std::vector<std::wstring> includedHeaders(std::wstring_view text);

/// C++ source with the templates and the function `std::span<const framework::DialogTemplate> FUNCTION()`.
std::wstring writeTemplateSource(const ResourceScript& script, const std::wstring& function);

} // namespace framework
