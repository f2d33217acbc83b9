#include "solver/CycleReport.h"

#include "solver/NodeEvaluator.h"

#include <string>

namespace solver {
namespace {

/// The node alone, so that the others need not be evaluated.
NodeBatch single(const Definition& definition, const NodeBatch& batch, std::size_t node) {
    const std::size_t size = definition.loadsPerNode() * definition.tensorsPerLoad();
    const auto tensors = std::span<const Tensor>(batch.tensors).subspan(node * size, size);
    const auto materials = materialsOf(batch, node);
    NodeBatch one;
    one.numbers = {batch.numbers[node]};
    one.materials.assign(materials.begin(), materials.end());
    one.materialEnds = {static_cast<std::uint32_t>(materials.size())};
    one.tensors.assign(tensors.begin(), tensors.end());
    return one;
}

/// The strains as they were counted, with the factor of the material's Poisson's ratio, and their stresses,
/// also between the turning points.
void fillStrains(const EvaluationPlan& plan, const ScalarHistory& history, CycleReport& report) {
    const StrainLifeModel& model = plan.strainMaterials[report.outcome.material];
    const double factor = plan.measure->ofShear ? model.shearMeasureFactor() : 1.0;
    std::vector<StressStrain> points(history.values.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = {factor * history.values[i], plan.stressMeasure ? history.stress[i] : 0.0};
    if (!plan.stressMeasure && model.hasCyclicCurve()) HysteresisPath().follow(model, points);
    report.history.clear();
    for (const StressStrain& point : points) {
        report.history.push_back(point.strain);
        report.stress.push_back(point.stress);
    }
}

} // namespace

Result<std::vector<CycleReport>> reportCycles(const Definition& definition, const EvaluationPlan& plan,
                                              const NodeBatch& batch, std::size_t node) {
    const NodeBatch one = single(definition, batch, node);
    if (one.materials.empty())
        return Error{"node " + std::to_string(batch.numbers[node]) +
                     " has no material; nothing is counted there"};
    NodeEvaluator evaluator(definition, plan);
    std::vector<Outcome> outcomes;
    if (const auto done = evaluator.evaluate(one, outcomes); !done) return done.error();
    std::vector<CycleReport> reports;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        const auto history = evaluator.history(one, 0, outcomes[i]);
        if (!history) return history.error();
        CycleReport report{plan.corrections[i], outcomes[i], {}, {}, {}};
        report.history.assign(history->values.begin(), history->values.end());
        report.cycles =
            evaluateEachCycle(plan, plan.corrections[i], *history, outcomes[i].material, evaluator.scratch());
        if (!isStressLife(plan.type)) fillStrains(plan, *history, report);
        reports.push_back(std::move(report));
    }
    return reports;
}

} // namespace solver
