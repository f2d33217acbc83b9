#include "workbench/import/TextWindow.h"

#include "base/ReplaceFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace workbench {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 18; ///< two of them fit the processor's second cache
/// No text file of the formats read here has lines anywhere near this; a binary file can.
constexpr std::size_t kLongestLine = std::size_t{1} << 22;

} // namespace

Result<TextWindow> TextWindow::openFile(const std::filesystem::path& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return Error{path.string() + " is a folder, not a file"};
    errno = 0;
    TextWindow window;
    window.name_ = path.string();
    window.file_.reset(std::fopen(path.string().c_str(), "rb"));
    if (!window.file_) return Error{path.string() + " cannot be opened: " + systemErrorText(errno)};
    std::setvbuf(window.file_.get(), nullptr, _IONBF, 0);
    const auto size = std::filesystem::file_size(path, error);
    window.size_ = error ? 0 : size;
    return window;
}

TextWindow TextWindow::overMemory(std::string_view bytes, std::string name) {
    TextWindow window;
    window.name_ = std::move(name);
    window.text_ = bytes;
    window.size_ = bytes.size();
    return window;
}

void TextWindow::refill(std::size_t atLeast) {
    if (!file_) return;
    const std::size_t kept = text_.size() - begin_;
    if (buffer_.size() < std::max(2 * kBlock, atLeast + kBlock)) {
        std::vector<char> larger(std::max(2 * kBlock, atLeast + kBlock));
        std::copy_n(text_.data() + begin_, kept, larger.data());
        buffer_ = std::move(larger);
    } else {
        std::memmove(buffer_.data(), text_.data() + begin_, kept);
    }
    windowOffset_ += begin_;
    begin_ = 0;
    std::size_t filled = kept;
    while (file_ && filled < buffer_.size()) {
        errno = 0;
        const std::size_t count =
            std::fread(buffer_.data() + filled, 1, buffer_.size() - filled, file_.get());
        filled += count;
        if (count > 0) continue;
        if (std::ferror(file_.get())) failure_ = name_ + " cannot be read: " + systemErrorText(errno);
        file_.reset();
    }
    text_ = std::string_view(buffer_.data(), filled);
}

std::string_view TextWindow::peek(std::size_t atLeast) {
    if (text_.size() - begin_ < atLeast) refill(atLeast);
    return unread();
}

void TextWindow::skipLines(std::size_t bytes, std::uint64_t lines) {
    begin_ += bytes;
    lineNumber_ += lines;
}

bool TextWindow::nextLine(std::string_view& line) {
    if (!failure_.empty()) return false;
    std::string_view rest = unread();
    std::size_t end = rest.find('\n');
    while (end == std::string_view::npos && file_) {
        if (rest.size() > kLongestLine) {
            failure_ = name_ + ":" + std::to_string(lineNumber_ + 1) +
                       ": this line has no end; the file is not text";
            return false;
        }
        refill(rest.size() + 1);
        rest = unread();
        end = rest.find('\n');
    }
    if (!failure_.empty() || rest.empty()) return false;
    ++lineNumber_;
    line = rest.substr(0, end);
    begin_ += end == std::string_view::npos ? rest.size() : end + 1;
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return true;
}

} // namespace workbench
