#include "tests/support/child/System.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace childsystem {

namespace {

std::string narrow(const wchar_t* text) {
    std::string out(3 * std::wstring_view(text).size() + 1, '\0');
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), static_cast<int>(out.size()),
                                           nullptr, nullptr);
    out.resize(static_cast<std::size_t>(size - 1));
    return out;
}

int blanks(std::wstring_view text) {
    return static_cast<int>(std::count(text.begin(), text.end(), L' '));
}

} // namespace

std::vector<std::string> arguments(int, char**) {
    wchar_t file[4096];
    ::GetModuleFileNameW(nullptr, file, static_cast<DWORD>(std::size(file)));
    int count = 0;
    wchar_t** values = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    // Without quotes around the program its blanks cut it into pieces, which are no arguments.
    const int pieces = blanks(file) - blanks(values[0]);
    std::vector<std::string> out{narrow(file)};
    for (int i = 1 + pieces; i < count; ++i)
        out.push_back(narrow(values[i]));
    ::LocalFree(values);
    return out;
}

void crash() {
    ::RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    std::abort();
}

std::string startedAs() {
    STARTUPINFOW startup{};
    ::GetStartupInfoW(&startup);
    return std::to_string(startup.cb) + " " + std::to_string(startup.dwFlags) + " " +
           std::to_string(startup.wShowWindow);
}

bool isOpen(long long handle) {
    DWORD flags = 0;
    return ::GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags);
}

} // namespace childsystem
