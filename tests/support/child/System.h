#pragma once

#include <string>
#include <vector>

/// What the child program asks of its system.
namespace childsystem {

/// The program and its arguments, UTF-8.
std::vector<std::string> arguments(int count, char** values);
[[noreturn]] void crash();
/// How the start asked for the first window: "flags show", or nothing.
std::string startedAs();
bool isOpen(long long handle);

} // namespace childsystem
