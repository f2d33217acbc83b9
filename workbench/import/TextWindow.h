#pragma once

#include "base/Result.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// The bytes of a text file, read once from front to back in blocks, so that memory does not grow with the
/// file. Views into it hold until the next call that reads.
class TextWindow {
  public:
    static Result<TextWindow> openFile(const std::filesystem::path& path);
    /// Over bytes that the caller keeps; `name` stands for the file in messages.
    static TextWindow overMemory(std::string_view bytes, std::string name);

    /// The next line without its line end (LF or CR LF). False at the end of the file or on failure.
    bool nextLine(std::string_view& line);
    /// Number, from 1, of the line that nextLine answered last.
    std::uint64_t lineNumber() const { return lineNumber_; }

    /// The bytes from the next line on: at least `atLeast` of them unless the file ends before.
    std::string_view peek(std::size_t atLeast);
    /// Passes `bytes` that peek answered, `lines` whole lines, or binary ones without any.
    void skipLines(std::size_t bytes, std::uint64_t lines);

    const std::string& name() const { return name_; }
    /// "name:line", the place of the last line; the name alone before the first.
    std::string place() const { return lineNumber_ == 0 ? name_ : name_ + ":" + std::to_string(lineNumber_); }
    std::uint64_t offset() const { return windowOffset_ + begin_; }
    std::uint64_t size() const { return size_; }
    /// Why reading stopped before the end of the file; empty when it did not.
    const std::string& failure() const { return failure_; }

  private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    TextWindow() = default;
    std::string_view unread() const { return text_.substr(begin_); }
    /// Reads on until `atLeast` bytes are unread or the file ends.
    void refill(std::size_t atLeast);

    std::string name_;
    std::unique_ptr<std::FILE, CloseFile> file_; ///< null over memory and after the end
    std::vector<char> buffer_;
    std::string_view text_; ///< the bytes at hand: in buffer_, or the caller's
    std::size_t begin_ = 0; ///< first unread byte of text_
    std::uint64_t windowOffset_ = 0;
    std::uint64_t size_ = 0;
    std::uint64_t lineNumber_ = 0;
    std::string failure_;
};

} // namespace workbench
