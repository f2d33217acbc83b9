#pragma once

#include "framework/files/PathMap.h"
#include "framework/system/Process.h"
#include "tests/support/TemporaryFolder.h"

/// Puts the tests' child program at `path`, to do what the lines of `commands` say (support/child/Main.cpp).
/// Answers the path as requests name it.
inline std::wstring installChild(const std::filesystem::path& path, std::string commands) {
    namespace fs = std::filesystem;
    fs::copy_file(VEXA_CHILD_PROGRAM, path, fs::copy_options::overwrite_existing);
    commands += '\n';
    fs::path lines = path;
    lines += ".do";
    writeBytes(lines, commands);
    return framework::widePath(path);
}

/// The request that starts a program as the module does: its path without quotes, the argument in quotes.
inline framework::ProcessRequest startOf(const std::wstring& program, const std::wstring& argument) {
    return {program, argument, program + L" \"" + argument + L"\""};
}
