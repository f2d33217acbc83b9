#include "workbench/picture/ContourPicture.h"

#include "base/ReplaceFile.h"
#include "workbench/picture/ContourDrawing.h"
#include "workbench/picture/SceneRenderer.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <mutex>

namespace workbench {
namespace {

int writeAll(int fd, std::span<const unsigned char> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return 0;
}

/// 0, or the error number of what failed.
int writeFile(const std::filesystem::path& path, std::span<const unsigned char> bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) return errno;
    const int failed = writeAll(fd, bytes);
    const int closed = ::close(fd) != 0 ? errno : 0;
    return failed ? failed : closed;
}

std::mutex oneAtATime;

bool hasExtension(const std::filesystem::path& path, std::string_view extension) {
    const std::string own = path.extension().string();
    return std::ranges::equal(own, extension, [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
    });
}

/// The bytes of the file.
Result<std::vector<unsigned char>> encoded(const ContourDrawing& drawing, bool asSvg) {
    if (asSvg) {
        const auto text = drawing.svg();
        if (!text) return text.error();
        return std::vector<unsigned char>(text->begin(), text->end());
    }
    const auto image = drawing.pixels();
    if (!image) return image.error();
    return encodePng(*image);
}

} // namespace

Result<Image> drawContour(const ContourPicture& picture) {
    const std::lock_guard lock(oneAtATime);
    const auto drawing = ContourDrawing::make(picture);
    if (!drawing) return drawing.error();
    return (*drawing)->pixels();
}

bool isPictureName(const std::filesystem::path& path) {
    return hasExtension(path, ".png") || isSvgName(path);
}

bool isSvgName(const std::filesystem::path& path) {
    return hasExtension(path, ".svg");
}

Result<DrawnContour> writeContour(const ContourPicture& picture, const std::filesystem::path& path) {
    if (!isPictureName(path))
        return Error{"the picture's name must end in .png or .svg, which " + path.string() + " does not"};
    const std::lock_guard lock(oneAtATime);
    const auto drawing = ContourDrawing::make(picture);
    if (!drawing) return drawing.error();
    const auto bytes = encoded(**drawing, isSvgName(path));
    if (!bytes) return bytes.error();
    ReplacedFile file(path);
    if (const int failed = writeFile(file.temporaryPath(), *bytes))
        return Error{"cannot write the picture " + path.string() + ": " + systemErrorText(failed)};
    if (auto written = file.commit(); !written) return written.error();
    return (*drawing)->facts();
}

} // namespace workbench
