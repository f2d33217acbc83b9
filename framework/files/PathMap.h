#pragma once

#include "framework/Export.h"

#include <filesystem>
#include <string>

namespace framework {

/// The platform's path for a path of the system. Where the platform's separator is "/": backslashes become
/// "/", and a drive letter with a separator behind it ("C:\temp") is cut, so that the rest starts at the
/// drive's folder, "/" unless set. On Windows a path stays as it is.
VEXA_API std::filesystem::path nativePath(const std::wstring& path);

/// Sets the folder that stands for a drive letter; an empty one sets it back. Without effect on Windows.
VEXA_API void setDriveFolder(wchar_t drive, const std::filesystem::path& folder);

/// The wide text of a platform path.
VEXA_API std::wstring widePath(const std::filesystem::path& path);

} // namespace framework
