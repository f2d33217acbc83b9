#include "framework/system/Library.h"

#include <windows.h>

namespace framework {

int keepLibrary(const void* address) {
    HMODULE library = nullptr;
    constexpr DWORD kForGood = GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
    return ::GetModuleHandleExW(kForGood, static_cast<const wchar_t*>(address), &library) ? 1 : 0;
}

} // namespace framework
