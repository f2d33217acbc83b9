#pragma once

#include "host/records/ItrKey.h"

#include <cstdint>
#include <string>
#include <vector>

/// A material. Stresses and moduli in database units (stress), density in mass per volume.
struct tagTMatl {
    ItrKey key = 0;
    std::int32_t number = 0; ///< the number that the user sees
    std::wstring name;
    double elasticModulus = 0;
    double poissonRatio = 0;
    double density = 0;

    // Strength after Mohr-Coulomb, for stability.
    std::int32_t notApplicable = 0;   ///< 1: no local safety is asked of it; its rate is 0
    std::int32_t excluded = 0;        ///< 1: it takes no part in stability at all
    std::int32_t strengthDefined = 0; ///< 1: cohesion and friction angle are given
    double cohesion = 0;              ///< stress
    double frictionAngle = 0;         ///< degrees
    std::int32_t tensileCutoff = 0;   ///< 1: tensileStrength bounds the mean stress
    double tensileStrength = 0;       ///< stress
};

/// Codes of tagTProp::typeCode.
namespace PropertyType {
inline constexpr int Line = 100;      ///< beams and trusses: no stress results
inline constexpr int Connector = 110; ///< springs, dampers, gaps and masses: no stress results
inline constexpr int Shell = 200;
inline constexpr int Geogrid2D = 210;
inline constexpr int GaugingPlate2D = 220;
inline constexpr int PlaneStress = 230;
inline constexpr int PlaneStrain = 240;
inline constexpr int Axisymmetric = 250;
inline constexpr int Membrane = 260;
inline constexpr int Solid = 300;
} // namespace PropertyType

/// What the elements of a part share: kind, thickness and materials.
struct tagTProp {
    ItrKey key = 0;
    std::int32_t number = 0;
    std::wstring name;
    std::int32_t typeCode = PropertyType::Solid;
    std::int32_t plotOnly = 0; ///< 1: elements shown but without stiffness
    double thickness = 0;      ///< 0 for solids, lines and connectors
    std::vector<ItrKey> materialKeys;
};
