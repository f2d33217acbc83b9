#pragma once

#include "host/records/ItrKey.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// A tabulated S-N curve. Points in ascending order of cycles: (cycles to failure, stress amplitude).
struct tagSNFun {
    ItrKey key = 0;
    std::wstring name;
    std::vector<std::array<double, 2>> points;
};

/// A load function over time: (time, value), times ascending; linear between its points.
struct tagFLFun {
    ItrKey key = 0;
    std::int32_t number = 0;
    std::wstring name;
    std::vector<std::array<double, 2>> points;
};

/// Codes of tagTFatg::fatigueType.
namespace FatigueType {
inline constexpr int StressLifeCases = 0;
inline constexpr int StrainLifeCases = 1;
inline constexpr int StressLifeSteps = 2;
inline constexpr int StrainLifeSteps = 3;
inline constexpr int StressAndStrainSteps = 4;
} // namespace FatigueType

/// Stress-life data of one material of a definition.
struct T_FATG_STRESS_LIFE_D {
    ItrKey materialKey = 0;
    std::int32_t curveType = 0;              ///< 0 parametric, 1 tabulated
    double yieldStrength = 0;                ///< declared first
    double ultimateStrength = 0;             ///< declared second
    std::array<double, 2> curveParameters{}; ///< Basquin: amplitude = first * cycles ^ second
    ItrKey curveKey = 0; ///< tagSNFun; parametric entries have a (possibly empty) curve of their own too
};

/// Strain-life data of one material of a definition (Coffin-Manson-Basquin).
struct T_FATG_STRAIN_LIFE_D {
    ItrKey materialKey = 0;
    std::int32_t deriveCyclicHardeningExponent = 0;   ///< 1: n' = b / c
    double cyclicHardeningExponent = 0;               ///< n'
    std::int32_t deriveCyclicStrengthCoefficient = 0; ///< 1: K' = sigma_f' / eps_f' ^ n'
    double cyclicStrengthCoefficient = 0;             ///< K'
    double fatigueStrengthCoefficient = 0;            ///< sigma_f'
    double fatigueStrengthExponent = 0;               ///< b
    double fatigueDuctilityCoefficient = 0;           ///< eps_f'
    double fatigueDuctilityExponent = 0;              ///< c
};

/// One load of a definition: a result case (or one step of it) scaled by a factor and a load function.
struct T_FATG_LOAD_D {
    std::wstring caseName;
    std::wstring stepName; ///< empty: the whole case
    double factor = 1;
    ItrKey loadFunctionKey = 0; ///< tagFLFun
};

/// A fatigue definition.
struct tagTFatg {
    ItrKey key = 0;
    std::wstring name;
    ItrKey analysisKey = 0;       ///< analysis whose results are read
    ItrKey resultAnalysisKey = 0; ///< analysis under which the fatigue result is registered
    std::int32_t fatigueType = 0; ///< see FatigueType
    std::int32_t stressOption =
        0; ///< 0 absolute maximum principal, 1 signed von Mises, 2 signed Tresca, 3 critical plane
    std::int32_t strainOption = 0; ///< likewise
    std::int32_t quickRainflow = 0;
    std::int32_t rainflowValue = 0; ///< per cent of the largest range below which cycles are left out
    std::array<std::int32_t, 6> meanStress{1, 0, 0,
                                           0, 0, 0}; ///< None, Goodman, Gerber, Soderberg, Morrow, SWT
    std::array<std::int32_t, 4> strainCorrections{1, 0, 0, 0};
    std::array<std::int32_t, 3> outputs{1, 1, 0}; ///< damage, life, equivalent amplitude
    std::int32_t loadCycleCount = 1;
    double infiniteLife = 1e12; ///< cycles
    std::vector<T_FATG_STRESS_LIFE_D> stressLifeMaterials;
    std::vector<T_FATG_STRAIN_LIFE_D> strainLifeMaterials;
    std::vector<T_FATG_LOAD_D> loads;
};
