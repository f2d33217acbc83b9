#pragma once

#include "host/records/ItrKey.h"

#include <string>

/// A record of which the tools built so far read only the name: stages, slip surfaces, probes, design
/// records and the like. Kind is the pool's number, so that each pool has a record type of its own.
template <int Kind>
struct T_NAMED_RECORD_D {
    ItrKey key = 0;
    std::wstring name;
};
