#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <span>

/// Sorts numbers ascending, in place; not-a-numbers come last. `companions`, when not empty, are as many and
/// go with their numbers; equal numbers keep their order. A length that differs sorts nothing and answers
/// zero.
class VEXA_API CQSort {
  public:
    static int QSortDbl(std::span<double> values, std::span<std::int32_t> companions = {});
    static int QSortLong(std::span<std::int32_t> values, std::span<std::int32_t> companions = {});
};
