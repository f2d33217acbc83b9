#include "solver/TextEncoding.h"

#include <windows.h>

#include <charconv>
#include <optional>

namespace solver {
namespace {

/// The number of a code page; nothing for a name that the system does not know.
std::optional<unsigned> codePageNumber(std::string_view name) {
    if (name.empty() || name == "UTF-8") return CP_UTF8;
    if (name == "EUC-KR") return 51949;
    if (name.starts_with("CP")) name.remove_prefix(2);
    unsigned number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    // Below are the system's words for "the user's code page" and its like, which say nothing about a file.
    constexpr unsigned kSmallest = 37;
    if (error != std::errc() || end != name.data() + name.size() || number < kSmallest) return std::nullopt;
    return ::IsValidCodePage(number) ? std::optional(number) : std::nullopt;
}

/// Nothing when some bytes are not text in the code page.
std::optional<std::wstring> toWide(std::string_view text, unsigned codePage) {
    const int length = static_cast<int>(text.size());
    const int needed = ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0);
    if (needed == 0) return std::nullopt;
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text.data(), length, wide.data(), needed);
    return wide;
}

std::string narrow(const std::wstring& wide) {
    const int length = static_cast<int>(wide.size());
    const int needed = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(needed), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, out.data(), needed, nullptr, nullptr);
    return out;
}

} // namespace

Result<std::string> toUtf8(std::string_view text, const std::string& codePage) {
    const auto number = codePageNumber(codePage);
    if (!number)
        return Error{"the code page \"" + codePage +
                     "\" is not known; set VEXA_CODE_PAGE to one such as 65001 or 949"};
    if (text.empty()) return std::string();
    const auto wide = toWide(text, *number);
    if (!wide)
        return Error{"the result file name is not text in the code page " +
                     (*number == CP_UTF8 ? "UTF-8" : "CP" + std::to_string(*number)) +
                     "; set VEXA_CODE_PAGE to the one that the file was written in"};
    return narrow(*wide);
}

} // namespace solver
