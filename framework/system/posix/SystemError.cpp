#include "framework/system/SystemError.h"

#include "framework/text/CodePage.h"

#include <string.h>

#include <cerrno>

namespace framework {

std::wstring systemErrorText(int osError) {
#ifdef __GLIBC__
    if (const char* text = ::strerrordesc_np(osError)) return fromUtf8(text);
#else
    if (const char* text = ::strerror(osError)) return fromUtf8(text);
#endif
    return L"error " + std::to_wstring(osError);
}

CFileException::Cause fileCause(int osError) {
    switch (osError) {
    case 0:
        return CFileException::none;
    case ENOENT:
        return CFileException::fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
    case EINVAL:
        return CFileException::badPath;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case EEXIST:
        return CFileException::accessDenied;
    case ETXTBSY:
    case EBUSY:
        return CFileException::sharingViolation;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return CFileException::diskFull;
    default:
        return CFileException::genericException;
    }
}

} // namespace framework
