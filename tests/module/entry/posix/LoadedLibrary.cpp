#include "tests/module/entry/LoadedLibrary.h"

#include <dlfcn.h>

namespace loadedlibrary {

bool loadInitializeUnload() {
    void* const library = ::dlopen(VEXA_BIN_DIR "/VEXA_gps.so", RTLD_NOW | RTLD_LOCAL);
    if (!library) return false;
    const auto initialize = reinterpret_cast<void (*)()>(::dlsym(library, "Init_VEXA_gpsdll"));
    if (initialize) initialize();
    return ::dlclose(library) == 0 && initialize;
}

bool isLoaded() {
    void* const library = ::dlopen(VEXA_BIN_DIR "/VEXA_gps.so", RTLD_NOW | RTLD_NOLOAD);
    return library && ::dlclose(library) == 0;
}

} // namespace loadedlibrary
