#include "resultfile/FatigueComponents.h"
#include "solver/Evaluation.h"

#include <algorithm>
#include <utility>

namespace solver {
namespace {

namespace fatigue = resultfile::fatigue;

std::string materialName(std::size_t index) {
    return "material " + std::to_string(index + 1);
}

Result<void> addMaterials(const Definition& definition, EvaluationPlan& plan) {
    const auto refusal = [](std::size_t index, const Error& error) {
        return Error{materialName(index) + ": " + error.message};
    };
    for (const StressLifeMaterial& material : definition.stressLifeMaterials) {
        auto curve = material.tabulated ? LifeCurve::table(material.points)
                                        : LifeCurve::basquin(material.basquin[0], material.basquin[1]);
        if (!curve) return refusal(plan.materials.size(), curve.error());
        Strengths strengths{material.ultimateStrength, material.yieldStrength, 0};
        // Basquin's line in reversals, sigma_f' (2N)^b, has sigma_f' where 2N is 1.
        if (!material.tabulated) strengths.fatigueCoefficient = curve->amplitudeAt(0.5);
        plan.materials.push_back({std::move(*curve), strengths});
    }
    for (const StrainLifeMaterial& material : definition.strainLifeMaterials) {
        auto model = StrainLifeModel::make(material);
        if (!model) return refusal(plan.strainMaterials.size(), model.error());
        if (plan.measure->ofShear && !model->hasPoissonRatio())
            return refusal(plan.strainMaterials.size(),
                           {std::string("Poisson's ratio must lie between 0 and 0.5 for the strain option ") +
                            plan.measure->name});
        plan.strainMaterials.push_back(*model);
    }
    return {};
}

/// What the material lacks for the correction; null when it lacks nothing.
const char* missing(const EvaluationPlan& plan, unsigned correction, std::size_t material) {
    if (isStressLife(plan.type))
        return meanStressCorrections()[correction].missing(plan.materials[material].strengths);
    const bool needsStress = correction != fatigue::kNone && !plan.stressMeasure;
    return needsStress && !plan.strainMaterials[material].hasCyclicCurve()
               ? "cyclic curve (n' from 0.001 to 10 and K' above 0)"
               : nullptr;
}

/// True when every material has what the correction needs; else a note says which one lacks what.
bool allSupport(const EvaluationPlan& plan, unsigned correction, std::vector<std::string>& notes) {
    for (std::size_t i = 0; i < plan.materials.size() + plan.strainMaterials.size(); ++i) {
        const char* what = missing(plan, correction, i);
        if (!what) continue;
        notes.push_back(std::string(fatigue::kCorrections[correction]) + " is left out: " + materialName(i) +
                        " has no " + what + ".");
        return false;
    }
    return true;
}

std::vector<unsigned> requestedCorrections(const Definition& definition) {
    std::vector<unsigned> requested;
    const bool stressLife = isStressLife(definition.type);
    const std::size_t flags =
        stressLife ? definition.corrections.size() : fatigue::kStrainLifeCorrections.size();
    for (unsigned i = 0; i < flags; ++i)
        if (definition.corrections[i])
            requested.push_back(stressLife ? i : fatigue::kStrainLifeCorrections[i]);
    return requested;
}

Result<void> addCorrections(const Definition& definition, EvaluationPlan& plan,
                            std::vector<std::string>& notes) {
    auto requested = requestedCorrections(definition);
    if (requested.empty()) {
        notes.push_back("No mean-stress correction is requested; None is computed.");
        requested.push_back(fatigue::kNone);
    }
    for (const unsigned correction : requested)
        if (allSupport(plan, correction, notes)) plan.corrections.push_back(correction);
    plan.correctsMeanStress = plan.corrections.size() > 1 || plan.corrections != std::vector{fatigue::kNone};
    if (plan.corrections.empty()) return Error{"nothing is left to compute: " + notes.back()};
    return {};
}

Result<void> chooseMeasures(const Definition& definition, EvaluationPlan& plan) {
    const auto option = [](std::int32_t number) {
        return &equivalentMeasures()[static_cast<std::size_t>(number - 1)];
    };
    plan.measure = option(isStressLife(definition.type) ? definition.stressOption : definition.strainOption);
    if (definition.type != AnalysisType::StressAndStrainSteps) return {};
    plan.stressMeasure = option(definition.stressOption);
    if (plan.searchesPlanes() != !plan.stressMeasure->evaluate)
        return Error{
            "the critical plane is asked for of stress or strain alone; where both come together, the "
            "stress option and the strain option must both be 4, or neither"};
    return {};
}

/// Tables, where so many lives are asked for that making them pays.
void addTables(const Definition& definition, EvaluationPlan& plan) {
    constexpr std::int32_t kManyNodes = 1000;
    constexpr std::size_t kMostTabulated = 64; // keeps memory small; lives of further ones are solved for
    if (!plan.searchesPlanes() && definition.nodeCount < kManyNodes) return;
    for (MaterialModel& model :
         std::span(plan.materials).first(std::min(plan.materials.size(), kMostTabulated)))
        model.curve = model.curve.tabulated();
    for (StrainLifeModel& model :
         std::span(plan.strainMaterials).first(std::min(plan.strainMaterials.size(), kMostTabulated)))
        model = model.tabulated();
}

} // namespace

Result<EvaluationPlan> makePlan(const Definition& definition, std::vector<std::string>& notes) {
    EvaluationPlan plan;
    plan.type = definition.type;
    if (const auto chosen = chooseMeasures(definition, plan); !chosen) return chosen.error();
    const auto& outputs = definition.outputs;
    if (std::none_of(outputs.begin(), outputs.end(), [](bool flag) { return flag; }))
        return Error{"no output is requested; ask for damage, life or equivalent amplitude"};
    plan.infiniteLife = definition.infiniteLife;
    plan.smallestRange = definition.quickRainflow ? definition.rainflowValue / 100.0 : 0.0;
    plan.blocks = definition.loadCycleCount;
    if (const auto added = addMaterials(definition, plan); !added) return added.error();
    if (const auto added = addCorrections(definition, plan, notes); !added) return added.error();
    addTables(definition, plan);
    return plan;
}

} // namespace solver
