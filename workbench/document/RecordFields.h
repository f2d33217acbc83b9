#pragma once

#include "host/records/Analysis.h"
#include "host/records/Fatigue.h"
#include "host/records/Material.h"
#include "host/records/Mesh.h"
#include "host/records/NamedRecords.h"

#include <tuple>

namespace workbench {

/// One field of a record as it stands in a document's JSON.
template <class T, class V>
struct Field {
    const char* name;
    V T::*member;
    int since = 1; ///< schema version; in older documents the member keeps its default
};

/// The fields of a record type, key and name aside (those have columns of their own). Reading and writing
/// follow the same table; a change of a table is a new schema version.
template <class T>
struct RecordFields;

template <int Kind>
struct RecordFields<T_NAMED_RECORD_D<Kind>> {
    static constexpr std::tuple<> fields{};
};

template <>
struct RecordFields<tagTMatl> {
    using T = tagTMatl;
    static constexpr std::tuple fields{Field{"number", &T::number},
                                       Field{"elastic_modulus", &T::elasticModulus},
                                       Field{"poisson_ratio", &T::poissonRatio},
                                       Field{"density", &T::density},
                                       Field{"not_applicable", &T::notApplicable, 2},
                                       Field{"excluded", &T::excluded, 2},
                                       Field{"strength_defined", &T::strengthDefined, 2},
                                       Field{"cohesion", &T::cohesion, 2},
                                       Field{"friction_angle", &T::frictionAngle, 2},
                                       Field{"tensile_cutoff", &T::tensileCutoff, 2},
                                       Field{"tensile_strength", &T::tensileStrength, 2}};
};

template <>
struct RecordFields<tagTProp> {
    using T = tagTProp;
    static constexpr std::tuple fields{Field{"number", &T::number}, Field{"type", &T::typeCode},
                                       Field{"plot_only", &T::plotOnly}, Field{"thickness", &T::thickness},
                                       Field{"materials", &T::materialKeys}};
};

template <>
struct RecordFields<tagTMset> {
    using T = tagTMset;
    static constexpr std::tuple fields{Field{"elements", &T::elementNumbers},
                                       Field{"nodes", &T::nodeNumbers}};
};

template <>
struct RecordFields<tagTVXMcas> {
    using T = tagTVXMcas;
    static constexpr std::tuple fields{Field{"type", &T::typeCode},
                                       Field{"output_control", &T::outputControlKey}};
};

template <>
struct RecordFields<tagTVXOctr> {
    static constexpr std::tuple fields{Field{"value", &tagTVXOctr::value},
                                       Field{"stress_ratio", &tagTVXOctr::stressRatio, 2}};
};

template <>
struct RecordFields<tagSNFun> {
    static constexpr std::tuple fields{Field{"points", &tagSNFun::points}};
};

template <>
struct RecordFields<tagFLFun> {
    static constexpr std::tuple fields{Field{"number", &tagFLFun::number},
                                       Field{"points", &tagFLFun::points}};
};

template <>
struct RecordFields<T_FATG_STRESS_LIFE_D> {
    using T = T_FATG_STRESS_LIFE_D;
    static constexpr std::tuple fields{Field{"material", &T::materialKey},
                                       Field{"curve_type", &T::curveType},
                                       Field{"yield_strength", &T::yieldStrength},
                                       Field{"ultimate_strength", &T::ultimateStrength},
                                       Field{"curve_parameters", &T::curveParameters},
                                       Field{"curve", &T::curveKey}};
};

template <>
struct RecordFields<T_FATG_STRAIN_LIFE_D> {
    using T = T_FATG_STRAIN_LIFE_D;
    static constexpr std::tuple fields{
        Field{"material", &T::materialKey},
        Field{"derive_cyclic_hardening_exponent", &T::deriveCyclicHardeningExponent},
        Field{"cyclic_hardening_exponent", &T::cyclicHardeningExponent},
        Field{"derive_cyclic_strength_coefficient", &T::deriveCyclicStrengthCoefficient},
        Field{"cyclic_strength_coefficient", &T::cyclicStrengthCoefficient},
        Field{"fatigue_strength_coefficient", &T::fatigueStrengthCoefficient},
        Field{"fatigue_strength_exponent", &T::fatigueStrengthExponent},
        Field{"fatigue_ductility_coefficient", &T::fatigueDuctilityCoefficient},
        Field{"fatigue_ductility_exponent", &T::fatigueDuctilityExponent}};
};

template <>
struct RecordFields<T_FATG_LOAD_D> {
    using T = T_FATG_LOAD_D;
    static constexpr std::tuple fields{Field{"case", &T::caseName}, Field{"step", &T::stepName},
                                       Field{"factor", &T::factor},
                                       Field{"load_function", &T::loadFunctionKey}};
};

template <>
struct RecordFields<tagTFatg> {
    using T = tagTFatg;
    static constexpr std::tuple fields{Field{"analysis", &T::analysisKey},
                                       Field{"result_analysis", &T::resultAnalysisKey},
                                       Field{"fatigue_type", &T::fatigueType},
                                       Field{"stress_option", &T::stressOption},
                                       Field{"strain_option", &T::strainOption},
                                       Field{"quick_rainflow", &T::quickRainflow},
                                       Field{"rainflow_value", &T::rainflowValue},
                                       Field{"mean_stress", &T::meanStress},
                                       Field{"strain_corrections", &T::strainCorrections},
                                       Field{"outputs", &T::outputs},
                                       Field{"load_cycle_count", &T::loadCycleCount},
                                       Field{"infinite_life", &T::infiniteLife},
                                       Field{"stress_life", &T::stressLifeMaterials},
                                       Field{"strain_life", &T::strainLifeMaterials},
                                       Field{"loads", &T::loads}};
};

} // namespace workbench
