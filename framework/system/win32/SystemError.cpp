#include "framework/system/SystemError.h"

#include "framework/system/StandardError.h"
#include "framework/system/win32/Errors.h"
#include "framework/text/CodePage.h"

#include <windows.h>

#include <cerrno>
#include <system_error>

namespace framework {

namespace {

/// The system's own sentence, in English where it has it.
std::wstring ownText(DWORD osError, DWORD language) {
    wchar_t text[512];
    DWORD size = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  osError, language, text, static_cast<DWORD>(std::size(text)), nullptr);
    while (size && (text[size - 1] == L'\n' || text[size - 1] == L'\r' || text[size - 1] == L'.'))
        --size;
    return {text, size};
}

} // namespace

int standardError(int osError) {
    switch (osError) {
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
        return EINVAL;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return EBUSY;
    case ERROR_EXE_MACHINE_TYPE_MISMATCH:
    case ERROR_BAD_EXE_FORMAT:
        return ENOEXEC;
    case kErrorIsFolder:
        return EISDIR;
    default: {
        const auto condition = std::system_category().default_error_condition(osError);
        return condition.category() == std::generic_category() ? condition.value() : 0;
    }
    }
}

std::wstring systemErrorText(int osError) {
    if (const int standard = standardError(osError))
        return fromUtf8(std::generic_category().message(standard));
    const auto number = static_cast<DWORD>(osError);
    for (const DWORD language : {DWORD{MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)}, DWORD{0}})
        if (const std::wstring text = ownText(number, language); !text.empty()) return text;
    return L"error " + std::to_wstring(osError);
}

} // namespace framework
