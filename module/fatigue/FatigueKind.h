#pragma once

#include <cstdint>

namespace fatigue {

/// Stress-life when no bit but the one of value 2 is set, else strain-life.
constexpr bool isStressLife(std::int32_t type) {
    return (type & ~2) == 0;
}

/// Types 2, 3 and 4 run over the steps of a case; every other type runs over load entries.
constexpr bool isStepBased(std::int32_t type) {
    return static_cast<std::uint32_t>(type) - 2u < 3u;
}

/// Type 4 hands the solver stresses and strains; the others one of the two.
constexpr bool needsStressAndStrain(std::int32_t type) {
    return type == 4;
}

/// The type as the header of the interface file states it.
constexpr std::int32_t headerTypeCode(std::int32_t type) {
    return type >= 0 && type <= 4 ? type : 0;
}

} // namespace fatigue
