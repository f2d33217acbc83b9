#pragma once

#include "framework/Export.h"
#include "framework/files/FileException.h"

#include <string>

namespace framework {

/// The system's sentence for an error number, in English whatever the user's locale is.
VEXA_API std::wstring systemErrorText(int osError);

/// The cause that stands for an error number of a file operation.
VEXA_API CFileException::Cause fileCause(int osError);

} // namespace framework
