#pragma once

#include "framework/files/FileException.h"

#include <string>

namespace framework {

/// The system's sentence for an error number, in English whatever the user's locale is.
std::wstring systemErrorText(int osError);

/// The cause that stands for an error number of a file operation.
CFileException::Cause fileCause(int osError);

} // namespace framework
