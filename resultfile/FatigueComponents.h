#pragma once

#include <array>

/// Identifiers of the fatigue results, one of each per mean-stress correction: base + 10 * correction.
namespace resultfile::fatigue {

inline constexpr unsigned kDamage = 76100;              ///< sum over all load blocks, 1 is failure
inline constexpr unsigned kLife = 76200;                ///< blocks to failure
inline constexpr unsigned kEquivalentAmplitude = 76300; ///< stress or strain amplitude of the same damage

/// Corrections in the order of the interface file's output flags.
inline constexpr std::array<const char*, 6> kCorrections{"None", "Goodman", "Gerber", "Soderberg", "Morrow", "SWT"};

constexpr unsigned componentId(unsigned base, unsigned correction) { return base + 10 * correction; }

} // namespace resultfile::fatigue
