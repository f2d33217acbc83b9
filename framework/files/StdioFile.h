#pragma once

#include "framework/Export.h"
#include "framework/files/File.h"

#include <string>
#include <string_view>

/// A text file, line by line. In text mode a line ends with the platform's line end.
class VEXA_API CStdioFile : public CFile {
  public:
    /// The next line without its line end (LF or CR LF), converted from the host's code page; zero at the
    /// end of the file. Raises CFileException.
    int ReadString(std::wstring& line);
    /// Writes text in the host's code page; "\n" becomes the platform's line end when the file was opened
    /// with typeText. Raises CFileException.
    void WriteString(std::wstring_view text);
};
