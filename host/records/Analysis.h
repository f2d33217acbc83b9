#pragma once

#include "host/records/ItrKey.h"

#include <cstddef>
#include <cstdint>
#include <string>

/// Longest name of an analysis.
inline constexpr std::size_t kAnalysisNameLength = 64;

/// An analysis (master case). Its name is also a part of the names of its files: at most 64 characters,
/// none of them one that a file name must not hold.
struct tagTVXMcas {
    ItrKey key = 0;
    std::wstring name;
    std::int32_t typeCode = 101; ///< analysis-type code; 101 is linear static
    ItrKey outputControlKey = 0;
};

/// Output control of an analysis.
struct tagTVXOctr {
    ItrKey key = 0;
    std::wstring name;
    std::int32_t value = 0;
    std::int32_t stressRatio = 0; ///< 1: local safety is shown as stress ratio, not as factor of safety
};
