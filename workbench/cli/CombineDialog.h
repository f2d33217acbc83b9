#pragma once

#include "host/GpsLinearCombCalculator.h"
#include "workbench/session/Document.h"

namespace workbench::cli {

/// Opens the module's combination dialog without a screen, does what a user would do to ask for `request`,
/// and presses OK. False when no set was made; the cause has been reported then.
bool combineInDialog(Document& document, const T_COMB_ENVL_RESULT_D& request);

} // namespace workbench::cli
