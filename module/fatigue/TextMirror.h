#pragma once

#include "framework/files/File.h"

#include <ostream>
#include <streambuf>
#include <string>

namespace fatigue {

/// The plain-text companion of the interface file: a narrow stream with default formatting (six significant
/// digits) in the C locale.
class TextMirror {
  public:
    TextMirror();
    void open(const std::wstring& path); ///< raises CFileException
    /// Null while the mirror is closed.
    std::ostream* stream() { return file_.IsOpen() ? &stream_ : nullptr; }
    /// Flushes and closes; raises CFileException when anything written so far was lost.
    void close() { file_.Close(); }
    /// Closes without a word, after another failure.
    void abandon() noexcept;

  private:
    /// Hands text to the file with the platform's line ends. A failed write ends the stream; the file tells
    /// of it when it is closed.
    class Buffer : public std::streambuf {
      public:
        explicit Buffer(CFile& file)
            : file_(file) {}

      private:
        std::streamsize xsputn(const char* text, std::streamsize count) override;
        int_type overflow(int_type character) override;
        CFile& file_;
    };

    CFile file_;
    Buffer buffer_{file_};
    std::ostream stream_{&buffer_};
};

} // namespace fatigue
