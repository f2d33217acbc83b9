#include "framework/system/Library.h"

#include <dlfcn.h>

namespace framework {

int keepLibrary(const void* address) {
    Dl_info holder{};
    if (::dladdr(address, &holder) == 0) return 0;
    void* const library = ::dlopen(holder.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
    if (!library) return 0;
    ::dlclose(library);
    return 1;
}

} // namespace framework
