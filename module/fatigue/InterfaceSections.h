#pragma once

#include "module/fatigue/RecordFraming.h"

#include <array>
#include <span>

namespace fatigue {

using CurvePoint = std::array<double, 2>;

/// What stands before the material section.
struct InterfaceOptions {
    std::int32_t nodeCount = 0;
    std::int32_t materialCount = 0;
    std::int32_t typeCode = 0;
    std::int32_t analysisKey = 0;
    std::int32_t stressOption = 0; ///< 0..3
    std::int32_t strainOption = 0; ///< 0..3
    bool quickRainflow = false;
    std::int32_t rainflowValue = 0;
    std::array<std::int32_t, 9> outputs{}; ///< flags, any value but 0 is 1 in the file
    double infiniteLife = 0;
};

inline constexpr std::size_t kFileNameWidth = 1024;

/// Records 1 and 2: the name field, kFileNameWidth bytes, and the program type.
void writeFileName(RecordWriter& records, std::string_view nameField);
void writeProgramType(RecordWriter& records, bool editionC);
/// Records 3 to 10. False at an option out of range; what precedes it is written.
bool writeOptions(RecordWriter& records, const InterfaceOptions& options);

struct StressLifeMaterial {
    double elasticModulus;
    double firstStrength;   ///< declared first, written last
    double secondStrength;  ///< declared second
    std::int32_t curveType; ///< 0 parametric, 1 tabulated
    std::array<double, 2> parameters;
    std::span<const CurvePoint> points; ///< of a tabulated curve
};
/// False, and nothing written, for an unknown curve type.
bool writeMaterial(RecordWriter& records, const StressLifeMaterial& material);

struct StrainLifeMaterial {
    double elasticModulus;
    double poissonRatio;
    bool deriveHardeningExponent;
    double hardeningExponent; ///< n'
    bool deriveStrengthCoefficient;
    double strengthCoefficient; ///< K'
    double fatigueStrengthCoefficient;
    double fatigueStrengthExponent;
    double fatigueDuctilityCoefficient;
    double fatigueDuctilityExponent;
};
/// Where asked for, n' = b / c and K' = sigma_f' / eps_f' ^ n' with the n' that is written (compatibility of
/// the cyclic stress-strain curve with the Coffin-Manson-Basquin lines).
void writeMaterial(RecordWriter& records, const StrainLifeMaterial& material);

struct LoadFunction {
    std::int32_t number;
    std::span<const CurvePoint> points; ///< (time, value)
};
struct CaseLoad {
    std::int32_t caseKey;
    double factor;
    std::int32_t functionNumber;
};
/// The load section of a run over load entries: sizes, functions, merged time axis, entries.
void writeCaseLoads(RecordWriter& records, std::span<const CaseLoad> loads,
                    std::span<const LoadFunction> functions, std::int32_t loadCycles);
/// The load section of a run over steps.
void writeStepLoads(RecordWriter& records, std::size_t steps, std::int32_t loadCycles, bool withComment);

} // namespace fatigue
