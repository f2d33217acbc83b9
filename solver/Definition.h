#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace solver {

/// Symmetric tensor in global axes: xx, yy, zz, xy, yz, zx. Strains are tensor components.
using Tensor = std::array<double, 6>;

/// What is evaluated, by the codes of the interface file.
enum class AnalysisType : std::int32_t {
    StressLifeCases = 0,
    StrainLifeCases = 1,
    StressLifeSteps = 2,
    StrainLifeSteps = 3,
    StressAndStrainSteps = 4,
};

/// Stress-life types take their material data from the first list, the others from the second.
constexpr bool isStressLife(AnalysisType type) {
    return type == AnalysisType::StressLifeCases || type == AnalysisType::StressLifeSteps;
}
/// Case-based types combine result cases by load functions; the others follow the steps in order.
constexpr bool isCaseBased(AnalysisType type) {
    return type == AnalysisType::StressLifeCases || type == AnalysisType::StrainLifeCases;
}

struct CurvePoint {
    double cycles = 0;
    double amplitude = 0;
};

struct StressLifeMaterial {
    double modulus = 0;
    double ultimateStrength = 0;
    double yieldStrength = 0;
    bool tabulated = false;
    std::array<double, 2> basquin{}; ///< coefficient and exponent, of a parametric curve
    std::vector<CurvePoint> points;  ///< as stored, of a tabulated curve
};

struct StrainLifeMaterial {
    double modulus = 0;
    double secondElasticConstant = 0;
    double cyclicHardeningExponent = 0;     ///< n'
    double cyclicStrengthCoefficient = 0;   ///< K'
    double fatigueStrengthCoefficient = 0;  ///< sigma_f'
    double fatigueStrengthExponent = 0;     ///< b
    double fatigueDuctilityCoefficient = 0; ///< eps_f'
    double fatigueDuctilityExponent = 0;    ///< c
};

struct LoadFunction {
    std::int32_t number = 0;
    std::vector<double> times; ///< ascending
    std::vector<double> values;
};

struct LoadEntry {
    std::int32_t caseKey = 0;
    double factor = 0;
    std::size_t function = 0; ///< index into Definition::functions
};

/// Everything in an interface file but its nodes.
struct Definition {
    std::string resultFileStem; ///< bytes as stored, in the writer's code page
    std::int32_t programType = 0;
    std::int32_t nodeCount = 0;
    std::int32_t materialCount = 0;
    AnalysisType type = AnalysisType::StressLifeCases;
    std::int32_t analysisKey = 0;
    std::int32_t stressOption = 0; ///< 1 .. 4
    std::int32_t strainOption = 0; ///< 1 .. 4
    bool quickRainflow = false;
    std::int32_t rainflowValue = 0;    ///< per cent
    std::array<bool, 6> corrections{}; ///< None, Goodman, Gerber, Soderberg, Morrow, SWT
    std::array<bool, 3> outputs{};     ///< damage, life, equivalent amplitude
    double infiniteLife = 0;           ///< cycles
    std::vector<StressLifeMaterial> stressLifeMaterials;
    std::vector<StrainLifeMaterial> strainLifeMaterials;
    std::int32_t loadCycleCount = 0;     ///< blocks
    std::vector<LoadFunction> functions; ///< case-based types
    std::vector<double> times;           ///< merged axis of the load functions, ascending
    std::vector<LoadEntry> loads;        ///< case-based types
    std::size_t stepCount = 0;           ///< step-based types

    /// Load records of each node.
    std::size_t loadsPerNode() const { return isCaseBased(type) ? loads.size() : stepCount; }
    /// Tensors in each load record: stress, strain, or stress and then strain.
    std::size_t tensorsPerLoad() const { return type == AnalysisType::StressAndStrainSteps ? 2 : 1; }
};

/// Some nodes in the order of the file, column by column. Kept from batch to batch, so that the memory is
/// reused.
struct NodeBatch {
    std::vector<std::int32_t> numbers;
    std::vector<std::uint32_t> materialEnds; ///< of node i: materials [end(i - 1), end(i))
    std::vector<std::uint32_t> materials; ///< indices into the material list, from 0, ascending within a node
    std::vector<Tensor> tensors;          ///< node by node, load by load

    std::size_t size() const { return numbers.size(); }
    void clear();
};

} // namespace solver
