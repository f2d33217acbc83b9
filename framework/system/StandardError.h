#pragma once

namespace framework {

/// The number that <cerrno> has for an error of the system, so that an error has one cause and one sentence
/// on every platform; 0 when it has none.
int standardError(int osError);

} // namespace framework
