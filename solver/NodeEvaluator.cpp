#include "solver/NodeEvaluator.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace solver {
namespace {

Error outOfRange(std::int32_t node) {
    return Error{"the load history of node " + std::to_string(node) +
                 " exceeds the range of numbers; check its loads and their factors"};
}

bool allFinite(std::span<const double> values) {
    return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

} // namespace

std::span<const std::uint32_t> materialsOf(const NodeBatch& batch, std::size_t node) {
    const std::size_t begin = node == 0 ? 0 : batch.materialEnds[node - 1];
    return std::span(batch.materials).subspan(begin, batch.materialEnds[node] - begin);
}

NodeEvaluator::NodeEvaluator(const Definition& definition, const EvaluationPlan& plan)
    : definition_(definition)
    , plan_(plan)
    , history_(definition)
    , governing_(plan.corrections.size()) {}

/// Takes apart what comes as stress, strain, stress, strain.
void NodeEvaluator::split(std::span<const Tensor> tensors) {
    stress_.resize(tensors.size() / 2);
    counted_.resize(tensors.size() / 2);
    for (std::size_t i = 0; i < counted_.size(); ++i) {
        stress_[i] = tensors[2 * i];
        counted_[i] = tensors[2 * i + 1];
    }
}

Result<void> NodeEvaluator::evaluate(const NodeBatch& batch, std::vector<Outcome>& outcomes) {
    outcomes.assign(batch.size() * plan_.corrections.size(), {});
    return plan_.searchesPlanes() ? evaluatePlanes(batch, outcomes) : evaluateMeasures(batch, outcomes);
}

Result<void> NodeEvaluator::evaluateMeasures(const NodeBatch& batch, std::vector<Outcome>& outcomes) {
    const std::size_t length = history_.length(), corrections = plan_.corrections.size();
    std::span<const Tensor> counted = batch.tensors;
    if (plan_.stressMeasure) {
        split(batch.tensors);
        counted = counted_;
        stressValues_.resize(batch.size() * length);
        history_.evaluate(*plan_.stressMeasure, stress_, stressValues_);
    }
    values_.resize(batch.size() * length);
    history_.evaluate(*plan_.measure, counted, values_);
    for (std::size_t node = 0; node < batch.size(); ++node) {
        const auto materials = materialsOf(batch, node);
        if (materials.empty()) continue;
        ScalarHistory history{std::span(values_).subspan(node * length, length), {}};
        if (plan_.stressMeasure) history.stress = std::span(stressValues_).subspan(node * length, length);
        if (!allFinite(history.values) || !allFinite(history.stress)) return outOfRange(batch.numbers[node]);
        evaluateHistory(plan_, history, materials, scratch_,
                        std::span(outcomes).subspan(node * corrections, corrections));
    }
    return {};
}

Result<void> NodeEvaluator::loadPlanes(const NodeBatch& batch, std::size_t node) {
    const std::size_t size = definition_.loadsPerNode() * definition_.tensorsPerLoad();
    const auto tensors = std::span<const Tensor>(batch.tensors).subspan(node * size, size);
    if (plan_.stressMeasure) {
        split(tensors);
        history_.columns(stress_, stressColumns_);
        history_.columns(counted_, countedColumns_);
    } else {
        history_.columns(tensors, countedColumns_);
    }
    if (!countedColumns_.projectable() || !stressColumns_.projectable())
        return outOfRange(batch.numbers[node]);
    return {};
}

Result<void> NodeEvaluator::evaluatePlanes(const NodeBatch& batch, std::vector<Outcome>& outcomes) {
    for (std::size_t node = 0; node < batch.size(); ++node) {
        const auto materials = materialsOf(batch, node);
        if (materials.empty()) continue;
        if (const auto loaded = loadPlanes(batch, node); !loaded) return loaded;
        search_.search(plan_, planes(), materials, scratch_, governing_);
        for (std::size_t i = 0; i < governing_.size(); ++i)
            outcomes[node * governing_.size() + i] = outcomeOf(plan_, governing_[i]);
    }
    return {};
}

Result<ScalarHistory> NodeEvaluator::history(const NodeBatch& batch, std::size_t node,
                                             const Outcome& outcome) {
    if (plan_.searchesPlanes()) {
        if (const auto loaded = loadPlanes(batch, node); !loaded) return loaded.error();
        return search_.project(planes(), outcome.normal);
    }
    const std::size_t size = definition_.loadsPerNode() * definition_.tensorsPerLoad();
    std::span<const Tensor> tensors = std::span<const Tensor>(batch.tensors).subspan(node * size, size);
    values_.resize(history_.length());
    if (plan_.stressMeasure) {
        split(tensors);
        tensors = counted_;
        stressValues_.resize(history_.length());
        history_.evaluate(*plan_.stressMeasure, stress_, stressValues_);
    } else {
        stressValues_.clear();
    }
    history_.evaluate(*plan_.measure, tensors, values_);
    if (!allFinite(values_) || !allFinite(stressValues_)) return outOfRange(batch.numbers[node]);
    return ScalarHistory{values_, stressValues_};
}

} // namespace solver
