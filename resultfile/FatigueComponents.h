#pragma once

#include <array>

/// Identifiers of the fatigue results, one of each per mean-stress correction: base + 10 * correction.
namespace resultfile::fatigue {

inline constexpr unsigned kDamage = 76100;              ///< sum over all load blocks, 1 is failure
inline constexpr unsigned kLife = 76200;                ///< blocks to failure
inline constexpr unsigned kEquivalentAmplitude = 76300; ///< stress or strain amplitude of the same damage
inline constexpr unsigned kGoverningMaterial = 76400;   ///< position in the definition's list, from 1
/// Normal of the governing plane of a critical-plane search, a unit vector in global axes: x, y, z. Of the
/// two opposite normals, the one whose last component that is not 0 is positive.
inline constexpr std::array<unsigned, 3> kGoverningNormal{76500, 76600, 76700};

/// The corrections of stress-life in the order of the interface file's output flags, then one that
/// strain-life alone has.
inline constexpr std::array<const char*, 7> kCorrections{"None",   "Goodman", "Gerber",        "Soderberg",
                                                         "Morrow", "SWT",     "Manson-Halford"};
inline constexpr unsigned kNone = 0, kGoodman = 1, kGerber = 2, kSoderberg = 3, kMorrow = 4, kSwt = 5,
                          kMansonHalford = 6;
/// The corrections of strain-life in the order of its four flags.
inline constexpr std::array<unsigned, 4> kStrainLifeCorrections{kNone, kMorrow, kSwt, kMansonHalford};

constexpr unsigned componentId(unsigned base, unsigned correction) {
    return base + 10 * correction;
}

} // namespace resultfile::fatigue
