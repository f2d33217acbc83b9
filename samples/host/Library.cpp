#include "Library.h"

#include <stdexcept>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

Library::Library(std::string file)
    : file_(std::move(file)) {
#if defined(_WIN32)
    handle_ = LoadLibraryA(file_.c_str());
    if (!handle_) throw std::runtime_error(file_ + ": system error " + std::to_string(GetLastError()));
#else
    handle_ = dlopen(file_.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle_) throw std::runtime_error(dlerror());
#endif
}

void* Library::address(const char* name) const {
#if defined(_WIN32)
    const auto found = reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
#else
    const auto found = dlsym(handle_, name);
#endif
    if (!found) throw std::runtime_error(file_ + " does not export " + name);
    return found;
}
