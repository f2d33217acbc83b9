#pragma once

#include "framework/Export.h"

#include <string>

/// File-name helpers. Paths may have either separator; a folder keeps its separator at the end. Only the
/// last path component has an extension.
class VEXA_API CFileCtrl {
  public:
    static bool FileExists(const std::wstring& path);              ///< a file, not a folder
    static std::wstring GetFilePath(const std::wstring& path);     ///< the folder, with its separator
    static std::wstring GetFileName(const std::wstring& path);     ///< last component without extension
    static std::wstring GetFilePathName(const std::wstring& path); ///< whole path without extension
    static std::wstring SetFilePathNameExt(const std::wstring& pathName,
                                           const std::wstring& extension); ///< joined by "."
};
