#pragma once

#include "host/records/ItrKey.h"

#include <cstdint>
#include <span>
#include <vector>

inline constexpr std::size_t kNoPosition = static_cast<std::size_t>(-1);

/// Position of `key` in ascending `keys`; kNoPosition when it is not there.
std::size_t positionOfKey(std::span<const std::uint32_t> keys, ItrKey key);

/// Positions, ascending and each once, at which strictly ascending `numbers` hold one of `wanted` (any order,
/// repeats allowed). A wanted number that `numbers` lacks is passed over.
std::vector<std::uint32_t> positionsOfNumbers(std::span<const std::int32_t> numbers,
                                              std::vector<std::int32_t> wanted);
