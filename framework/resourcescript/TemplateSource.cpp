#include "framework/resourcescript/ResourceScript.h"

#include <cstdio>

namespace framework {
namespace {

/// A wide literal of ASCII characters alone; what is not one is escaped.
std::wstring literal(const std::wstring& text) {
    std::wstring out = L"L\"";
    for (const wchar_t c : text) {
        if (c == L'"' || c == L'\\') {
            out += L'\\';
            out += c;
        } else if (c >= L' ' && c < 0x7F) {
            out += c;
        } else if (c < L' ' || c == 0x7F) {
            wchar_t octal[8];
            std::swprintf(octal, 8, L"\\%03o", static_cast<unsigned>(c));
            out += octal;
        } else {
            wchar_t code[16];
            std::swprintf(code, 16, L"\\U%08X", static_cast<unsigned>(c));
            out += code;
        }
    }
    return out + L"\"";
}

std::wstring hex(unsigned value) {
    wchar_t text[16];
    std::swprintf(text, 16, L"0x%08Xu", value);
    return text;
}

std::wstring rect(const int (&r)[4]) {
    return L"{" + std::to_wstring(r[0]) + L", " + std::to_wstring(r[1]) + L", " +
           std::to_wstring(r[0] + r[2]) + L", " + std::to_wstring(r[1] + r[3]) + L"}";
}

} // namespace

std::wstring writeTemplateSource(const ResourceScript& script, const std::wstring& function) {
    std::wstring out = L"// Made from a resource script; do not edit.\n"
                       L"#include \"framework/windows/dialogs/DialogTemplate.h\"\n\n"
                       L"using framework::ControlTemplate;\nusing framework::DialogTemplate;\n\n"
                       L"std::span<const DialogTemplate> " +
                       function + L"();\n\nnamespace {\n\n";
    for (const auto& dialog : script.dialogs) {
        if (dialog.controls.empty()) continue;
        out += L"const ControlTemplate kControls" + std::to_wstring(dialog.id) + L"[] = {\n";
        for (const auto& control : dialog.controls)
            out += L"    {" + literal(control.className) + L", " + literal(control.text) + L", " +
                   std::to_wstring(control.id) + L", " + hex(control.style) + L", " + hex(control.exStyle) +
                   L", " + rect(control.rect) + L"},\n";
        out += L"};\n\n";
    }
    out += L"} // namespace\n\nstd::span<const DialogTemplate> " + function + L"() {\n";
    if (script.dialogs.empty()) return out + L"    return {};\n}\n";
    out += L"    static const DialogTemplate templates[] = {\n";
    for (const auto& dialog : script.dialogs)
        out += L"        {" + std::to_wstring(dialog.id) + L", " + literal(dialog.title) + L", " +
               hex(dialog.style) + L", " + hex(dialog.exStyle) + L", " + rect(dialog.rect) + L", " +
               (dialog.controls.empty() ? L"{}" : L"kControls" + std::to_wstring(dialog.id)) + L"},\n";
    return out + L"    };\n    return templates;\n}\n";
}

} // namespace framework
