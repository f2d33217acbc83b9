#include "framework/system/SystemError.h"

#include "framework/system/StandardError.h"

#include <cerrno>

namespace framework {

CFileException::Cause fileCause(int osError) {
    if (osError == 0) return CFileException::none;
    switch (standardError(osError)) {
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
#ifdef EDQUOT
    case EDQUOT:
#endif
    case ENOSPC:
    case EFBIG:
        return CFileException::diskFull;
    default:
        return CFileException::genericException;
    }
}

} // namespace framework
