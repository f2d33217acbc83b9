#pragma once

#include "framework/files/FileException.h"

#include <fstream>
#include <string>

namespace fatigue {

/// The plain-text companion of the interface file: a narrow stream with default formatting (six significant
/// digits) in the C locale.
class TextMirror {
  public:
    void open(const std::wstring& path); ///< raises CFileException
    /// Null while the mirror is closed.
    std::ostream* stream() { return stream_.is_open() ? &stream_ : nullptr; }
    /// Flushes and closes; raises CFileException when anything written so far was lost.
    void close();
    /// Closes without a word, after another failure.
    void abandon() noexcept;

  private:
    [[noreturn]] void fail(CFileException::Operation operation);

    std::wstring path_;
    std::ofstream stream_;
};

} // namespace fatigue
