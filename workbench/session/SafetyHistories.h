#pragma once

#include "workbench/session/Document.h"

#include <string>
#include <vector>

namespace workbench {

/// Names of the histories of the factor of safety that lie beside the document, ascending.
std::vector<std::wstring> safetyHistoryNames(const Document& document);

} // namespace workbench
