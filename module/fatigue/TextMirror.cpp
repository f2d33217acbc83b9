#include "module/fatigue/TextMirror.h"

#include "framework/files/PathMap.h"
#include "framework/system/SystemError.h"

#include <cerrno>
#include <locale>

namespace fatigue {

void TextMirror::open(const std::wstring& path) {
    path_ = path;
    stream_ = std::ofstream();
    stream_.imbue(std::locale::classic());
    errno = 0;
    stream_.open(framework::nativePath(path), std::ios::out | std::ios::trunc);
    if (!stream_) fail(CFileException::open);
}

void TextMirror::close() {
    if (!stream_.is_open()) return;
    errno = 0;
    const bool written = static_cast<bool>(stream_.flush());
    stream_.close();
    if (!written || !stream_) fail(CFileException::write);
}

void TextMirror::abandon() noexcept {
    // The first failure is the one to report; a stream with exceptions off raises none of its own.
    if (stream_.is_open()) stream_.close();
}

void TextMirror::fail(CFileException::Operation operation) {
    const int cause = errno;
    stream_ = std::ofstream();
    throw CFileException(framework::fileCause(cause), cause, path_, operation);
}

} // namespace fatigue
