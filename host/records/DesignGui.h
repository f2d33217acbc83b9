#pragma once

#include "host/records/ItrKey.h"

#include <string>

/// What the host's design window hands to the optimization dialogs.
struct tagTDgnaGUI {
    ItrKey designKey = 0; ///< the design-analysis record (PoolId::Dgna)
    std::wstring name;    ///< of the design
};
