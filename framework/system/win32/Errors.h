#pragma once

namespace framework {

/// ERROR_DIRECTORY_NOT_SUPPORTED, which not all headers have: a folder stands where a file is wanted.
inline constexpr int kErrorIsFolder = 336;

} // namespace framework
