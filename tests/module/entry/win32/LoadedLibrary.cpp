#include "tests/module/entry/LoadedLibrary.h"

#include <windows.h>

namespace loadedlibrary {

bool loadInitializeUnload() {
    const HMODULE library = ::LoadLibraryW(L"VEXA_gps.dll");
    if (!library) return false;
    const auto initialize =
        reinterpret_cast<void (*)()>(reinterpret_cast<void*>(::GetProcAddress(library, "Init_VEXA_gpsdll")));
    if (initialize) initialize();
    return ::FreeLibrary(library) && initialize;
}

bool isLoaded() {
    return ::GetModuleHandleW(L"VEXA_gps.dll") != nullptr;
}

} // namespace loadedlibrary
