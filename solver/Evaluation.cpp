#include "solver/Evaluation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace solver {
namespace {

const char* unsupportedType(AnalysisType type) {
    switch (type) {
    case AnalysisType::StrainLifeCases:
        return "strain-life over load cases";
    case AnalysisType::StrainLifeSteps:
        return "strain-life over steps";
    case AnalysisType::StressAndStrainSteps:
        return "stress and strain over steps";
    default:
        return nullptr;
    }
}

Error unsupported(const std::string& what) {
    return Error{what + " is not supported by this version of the solver"};
}

std::string materialName(std::size_t index) {
    return "material " + std::to_string(index + 1);
}

Result<LifeCurve> makeCurve(const StressLifeMaterial& material) {
    return material.tabulated ? LifeCurve::table(material.points)
                              : LifeCurve::basquin(material.basquin[0], material.basquin[1]);
}

Result<void> addMaterials(const Definition& definition, EvaluationPlan& plan) {
    for (const StressLifeMaterial& material : definition.stressLifeMaterials) {
        auto curve = makeCurve(material);
        if (!curve) return Error{materialName(plan.materials.size()) + ": " + curve.error().message};
        plan.materials.push_back({std::move(*curve), {material.ultimateStrength, material.yieldStrength}});
    }
    return {};
}

/// True when every material has what the correction needs; else a note says which one lacks what.
bool allSupport(const MeanStressCorrection& correction, const EvaluationPlan& plan,
                std::vector<std::string>& notes) {
    for (std::size_t i = 0; i < plan.materials.size(); ++i) {
        const char* missing = correction.missing(plan.materials[i].strengths);
        if (!missing) continue;
        notes.push_back(std::string(correction.name) + " is left out: " + materialName(i) + " has no " +
                        missing + " above 0.");
        return false;
    }
    return true;
}

Result<void> addCorrections(const Definition& definition, EvaluationPlan& plan,
                            std::vector<std::string>& notes) {
    const auto table = meanStressCorrections();
    auto requested = definition.corrections;
    if (std::none_of(requested.begin(), requested.end(), [](bool flag) { return flag; })) {
        notes.push_back("No mean-stress correction is requested; None is computed.");
        requested[0] = true;
    }
    for (unsigned i = 0; i < requested.size(); ++i) {
        if (!requested[i]) continue;
        if (!table[i].equivalentAmplitude)
            return unsupported(std::string("the mean-stress correction ") + table[i].name);
        if (allSupport(table[i], plan, notes)) plan.corrections.push_back(i);
    }
    if (plan.corrections.empty()) return Error{"nothing is left to compute: " + notes.back()};
    return {};
}

} // namespace

Result<EvaluationPlan> makePlan(const Definition& definition, std::vector<std::string>& notes) {
    if (const char* type = unsupportedType(definition.type)) return unsupported(type);
    EvaluationPlan plan;
    plan.measure = &equivalentMeasures()[static_cast<std::size_t>(definition.stressOption - 1)];
    if (!plan.measure->evaluate) return unsupported(std::string("the stress option ") + plan.measure->name);
    const auto& outputs = definition.outputs;
    if (std::none_of(outputs.begin(), outputs.end(), [](bool flag) { return flag; }))
        return Error{"no output is requested; ask for damage, life or equivalent amplitude"};
    plan.infiniteLife = definition.infiniteLife;
    plan.smallestRange = definition.quickRainflow ? definition.rainflowValue / 100.0 : 0.0;
    plan.blocks = definition.loadCycleCount;
    if (const auto added = addMaterials(definition, plan); !added) return added.error();
    if (const auto added = addCorrections(definition, plan, notes); !added) return added.error();
    return plan;
}

namespace {

/// Sums over one block for one material.
struct BlockSums {
    double damage = 0;
    double uncutDamage = 0; ///< with the cycles beyond the infinite life
    double cycles = 0;
    double largestAmplitude = 0; ///< corrected
};

BlockSums sumBlock(const MaterialModel& material, const MeanStressCorrection& correction, double infiniteLife,
                   std::span<const Cycle> cycles) {
    BlockSums sums;
    for (const Cycle& cycle : cycles) {
        const double amplitude =
            correction.equivalentAmplitude(0.5 * cycle.range, cycle.mean, material.strengths);
        const double cyclesToFailure = material.curve.cyclesToFailure(amplitude);
        const double damage = cycle.count / cyclesToFailure;
        sums.uncutDamage += damage;
        if (cyclesToFailure <= infiniteLife) sums.damage += damage;
        sums.cycles += cycle.count;
        sums.largestAmplitude = std::max(sums.largestAmplitude, amplitude);
    }
    return sums;
}

double equivalentAmplitude(const BlockSums& sums, const LifeCurve& curve) {
    const double cyclesToFailure = sums.cycles / sums.uncutDamage;
    // Without any damage the largest amplitude does none either.
    return std::isfinite(cyclesToFailure) ? curve.amplitudeAt(cyclesToFailure) : sums.largestAmplitude;
}

} // namespace

Outcome evaluateCycles(const EvaluationPlan& plan, const MeanStressCorrection& correction,
                       std::span<const Cycle> cycles, std::span<const std::uint32_t> materials) {
    BlockSums worst;
    std::uint32_t governing = materials.front();
    for (const std::uint32_t material : materials) {
        const BlockSums sums = sumBlock(plan.materials[material], correction, plan.infiniteLife, cycles);
        if (material != materials.front() &&
            std::pair(sums.damage, sums.uncutDamage) <= std::pair(worst.damage, worst.uncutDamage))
            continue;
        worst = sums;
        governing = material;
    }
    Outcome outcome;
    outcome.damage = worst.damage * plan.blocks;
    outcome.life = worst.damage > 0 ? std::min(1.0 / worst.damage, plan.infiniteLife) : plan.infiniteLife;
    outcome.equivalentAmplitude = equivalentAmplitude(worst, plan.materials[governing].curve);
    outcome.material = governing;
    return outcome;
}

void evaluateHistory(const EvaluationPlan& plan, std::span<const double> history,
                     std::span<const std::uint32_t> materials, EvaluationScratch& scratch,
                     std::span<Outcome> outcomes) {
    countCycles(history, scratch.counter, scratch.cycles);
    if (plan.smallestRange > 0) dropSmallCycles(scratch.cycles, plan.smallestRange);
    for (std::size_t i = 0; i < plan.corrections.size(); ++i)
        outcomes[i] =
            evaluateCycles(plan, meanStressCorrections()[plan.corrections[i]], scratch.cycles, materials);
}

} // namespace solver
