#include "framework/system/SystemError.h"

#include "framework/system/StandardError.h"
#include "framework/text/CodePage.h"

#include <string.h>

namespace framework {

std::wstring systemErrorText(int osError) {
#ifdef __GLIBC__
    if (const char* text = ::strerrordesc_np(osError)) return fromUtf8(text);
#else
    if (const char* text = ::strerror(osError)) return fromUtf8(text);
#endif
    return L"error " + std::to_wstring(osError);
}

int standardError(int osError) {
    return osError;
}

} // namespace framework
