#pragma once

#include <cstdint>

/// Addresses one record of the model or the results. Given out by the host, never reused; 0 means none.
/// The host gives out keys below 2^31, so that a key also fits the 32-bit fields of older files.
using ItrKey = std::uint64_t;
