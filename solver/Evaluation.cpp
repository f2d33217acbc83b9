#include "solver/Evaluation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace solver {
namespace {

/// Life of a cycle, and the amplitude at mean stress 0 that has the same life.
struct CycleLife {
    double cycles = 0;
    double equivalentAmplitude = 0;
};

CycleLife lifeOf(const MaterialModel& material, unsigned correction, const Cycle& cycle) {
    const double amplitude = meanStressCorrections()[correction].equivalentAmplitude(
        0.5 * cycle.range, cycle.mean, material.strengths);
    return {material.curve.cyclesToFailure(amplitude), amplitude};
}

/// Without the amplitude: where nothing fails there is none, elsewhere it takes the curve once more.
CycleLife lifeOf(const StrainLifeModel& material, unsigned correction, const StrainCycle& cycle) {
    return {material.cyclesToFailure(correction, cycle), 0};
}

double equivalentAmplitudeOf(const MaterialModel&, const CycleLife& life) {
    return life.equivalentAmplitude;
}
double equivalentAmplitudeOf(const StrainLifeModel& material, const CycleLife& life) {
    return std::isfinite(life.cycles) ? material.amplitudeAt(life.cycles) : 0.0;
}

double stressOf(const Cycle& cycle) {
    return cycle.mean;
}
double stressOf(const StrainCycle& cycle) {
    return cycle.meanStress;
}
double largestStressOf(const Cycle& cycle) {
    return cycle.mean + 0.5 * cycle.range;
}
double largestStressOf(const StrainCycle& cycle) {
    return cycle.largestStress;
}

template <class Material, class AnyCycle>
BlockSums sumBlock(const Material& material, unsigned correction, double infiniteLife,
                   const std::vector<AnyCycle>& cycles) {
    BlockSums sums;
    for (const AnyCycle& cycle : cycles) {
        const auto [cyclesToFailure, amplitude] = lifeOf(material, correction, cycle);
        const double damage = cycle.count / cyclesToFailure;
        sums.uncutDamage += damage;
        if (cyclesToFailure <= infiniteLife) sums.damage += damage;
        sums.cycles += cycle.count;
        sums.largestAmplitude = std::max(sums.largestAmplitude, amplitude);
    }
    return sums;
}

template <class Material, class AnyCycle>
std::vector<EvaluatedCycle> evaluateEach(const Material& material, unsigned correction, double infiniteLife,
                                         const std::vector<AnyCycle>& cycles) {
    std::vector<EvaluatedCycle> all;
    for (const AnyCycle& cycle : cycles) {
        const CycleLife life = lifeOf(material, correction, cycle);
        all.push_back({cycle.range, cycle.mean, cycle.count, stressOf(cycle), largestStressOf(cycle),
                       equivalentAmplitudeOf(material, life), life.cycles,
                       life.cycles <= infiniteLife ? cycle.count / life.cycles : 0.0});
    }
    return all;
}

void countStress(const EvaluationPlan& plan, const ScalarHistory& history, EvaluationScratch& scratch) {
    countCycles(history.values, scratch.counter, scratch.cycles);
    if (plan.smallestRange > 0) dropSmallCycles(scratch.cycles, plan.smallestRange);
}

/// Per material: its hysteresis and its Poisson's ratio have a say.
void countStrain(const EvaluationPlan& plan, const ScalarHistory& history, const StrainLifeModel& model,
                 EvaluationScratch& scratch) {
    followStresses(model, history.values, plan.measure->ofShear ? model.shearMeasureFactor() : 1.0,
                   history.stress, plan.correctsMeanStress, scratch.strain);
    countStrainCycles(scratch.strain, scratch.strainCycles);
    if (plan.smallestRange > 0) dropSmallCycles(scratch.strainCycles, plan.smallestRange);
}

double amplitudeAt(const EvaluationPlan& plan, std::uint32_t material, double cycles) {
    return isStressLife(plan.type) ? plan.materials[material].curve.amplitudeAt(cycles)
                                   : plan.strainMaterials[material].amplitudeAt(cycles);
}

} // namespace

bool Governing::worseThan(const Governing& other) const {
    return std::pair(sums.damage, sums.uncutDamage) > std::pair(other.sums.damage, other.sums.uncutDamage);
}

void sumHistory(const EvaluationPlan& plan, std::span<const unsigned> corrections,
                const ScalarHistory& history, std::span<const std::uint32_t> materials,
                EvaluationScratch& scratch, std::span<Governing> governing) {
    const bool stressLife = isStressLife(plan.type);
    if (stressLife) countStress(plan, history, scratch);
    for (const std::uint32_t material : materials) {
        if (!stressLife) countStrain(plan, history, plan.strainMaterials[material], scratch);
        for (std::size_t i = 0; i < corrections.size(); ++i) {
            const BlockSums sums = stressLife ? sumBlock(plan.materials[material], corrections[i],
                                                         plan.infiniteLife, scratch.cycles)
                                              : sumBlock(plan.strainMaterials[material], corrections[i],
                                                         plan.infiniteLife, scratch.strainCycles);
            const Governing candidate{sums, material, {}};
            if (material == materials.front() || candidate.worseThan(governing[i])) governing[i] = candidate;
        }
    }
}

std::vector<EvaluatedCycle> evaluateEachCycle(const EvaluationPlan& plan, unsigned correction,
                                              const ScalarHistory& history, std::uint32_t material,
                                              EvaluationScratch& scratch) {
    if (isStressLife(plan.type)) {
        countStress(plan, history, scratch);
        return evaluateEach(plan.materials[material], correction, plan.infiniteLife, scratch.cycles);
    }
    countStrain(plan, history, plan.strainMaterials[material], scratch);
    return evaluateEach(plan.strainMaterials[material], correction, plan.infiniteLife, scratch.strainCycles);
}

DamageBound boundDamage(const EvaluationPlan& plan, unsigned correction, std::uint32_t material,
                        TensorColumns::Extremes extremes, double largestStress, std::size_t length) {
    const double range = extremes.largest - extremes.smallest;
    const double cycles = 0.5 * static_cast<double>(length - 1);
    double fewest = 0;
    if (isStressLife(plan.type)) {
        const MaterialModel& model = plan.materials[material];
        // Of all cycles below the largest stress, that of the largest range has the largest equivalent
        // amplitude, unless a mean can reach the strength at which a cycle fails at once.
        const CycleLife atMost = lifeOf(model, correction, Cycle{range, extremes.largest, 1});
        fewest = atMost.cycles;
        if (std::isfinite(atMost.equivalentAmplitude))
            fewest = lifeOf(model, correction, Cycle{range, 0.5 * (extremes.largest + extremes.smallest), 1})
                         .cycles;
    } else {
        const StrainLifeModel& model = plan.strainMaterials[material];
        if (!plan.stressMeasure)
            largestStress = model.stressAt(std::max(std::abs(extremes.largest), std::abs(extremes.smallest)));
        fewest = model.cyclesToFailure(correction, {{range, 0, 1}, largestStress, largestStress});
    }
    return {cycles / fewest, fewest > plan.infiniteLife};
}

Outcome outcomeOf(const EvaluationPlan& plan, const Governing& governing) {
    const BlockSums& sums = governing.sums;
    Outcome outcome;
    outcome.damage = sums.damage * plan.blocks;
    outcome.life = sums.damage > 0 ? std::min(1.0 / sums.damage, plan.infiniteLife) : plan.infiniteLife;
    const double cyclesToFailure = sums.cycles / sums.uncutDamage;
    // Without any damage the largest amplitude does none either.
    outcome.equivalentAmplitude = std::isfinite(cyclesToFailure)
                                      ? amplitudeAt(plan, governing.material, cyclesToFailure)
                                      : sums.largestAmplitude;
    outcome.material = governing.material;
    outcome.normal = governing.normal;
    return outcome;
}

void evaluateHistory(const EvaluationPlan& plan, const ScalarHistory& history,
                     std::span<const std::uint32_t> materials, EvaluationScratch& scratch,
                     std::span<Outcome> outcomes) {
    scratch.governing.resize(plan.corrections.size());
    sumHistory(plan, plan.corrections, history, materials, scratch, scratch.governing);
    for (std::size_t i = 0; i < plan.corrections.size(); ++i)
        outcomes[i] = outcomeOf(plan, scratch.governing[i]);
}

} // namespace solver
