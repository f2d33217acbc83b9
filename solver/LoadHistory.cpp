#include "solver/LoadHistory.h"

#include <algorithm>

namespace solver {
namespace {

/// Weights that are held at a time: enough to serve many nodes, small enough for the cache. Long histories of
/// many entries go through in pieces.
constexpr std::size_t kWeightsHeld = 1 << 14;

void combine(std::span<const Tensor> loads, std::span<const double> weights, std::span<Tensor> path) {
    const double* weight = weights.data();
    for (Tensor& sum : path) {
        sum.fill(0.0);
        for (const Tensor& load : loads) {
            const double factor = *weight++;
            for (std::size_t i = 0; i < sum.size(); ++i)
                sum[i] += factor * load[i];
        }
    }
}

} // namespace

double valueAt(const LoadFunction& function, double time) {
    const auto& times = function.times;
    const auto& values = function.values;
    const auto after =
        static_cast<std::size_t>(std::lower_bound(times.begin(), times.end(), time) - times.begin());
    if (after == times.size()) return values.back();
    if (after == 0 || times[after] == time) return values[after];
    const double share = (time - times[after - 1]) / (times[after] - times[after - 1]);
    return (1.0 - share) * values[after - 1] + share * values[after];
}

std::size_t LoadHistory::length() const {
    return isCaseBased(definition_.type) ? definition_.times.size() : definition_.stepCount;
}

void LoadHistory::fillWeights(std::size_t first, std::size_t count) {
    if (heldFirst_ == first && heldCount_ == count) return;
    heldFirst_ = first;
    heldCount_ = count;
    weights_.resize(count * definition_.loads.size());
    double* weight = weights_.data();
    for (std::size_t t = first; t < first + count; ++t)
        for (const LoadEntry& entry : definition_.loads)
            *weight++ = entry.factor * valueAt(definition_.functions[entry.function], definition_.times[t]);
}

std::size_t LoadHistory::piece() const {
    return std::clamp<std::size_t>(kWeightsHeld / definition_.loads.size(), 1, length());
}

void LoadHistory::evaluate(const EquivalentMeasure& measure, std::span<const Tensor> tensors,
                           std::span<double> values) {
    if (!isCaseBased(definition_.type)) {
        measure.evaluate(tensors, values);
        return;
    }
    const std::size_t entries = definition_.loads.size();
    const std::size_t times = length();
    const std::size_t nodes = tensors.size() / entries;
    for (std::size_t first = 0; first < times; first += piece()) {
        const std::size_t count = std::min(piece(), times - first);
        fillWeights(first, count);
        path_.resize(count);
        for (std::size_t node = 0; node < nodes; ++node) {
            combine(tensors.subspan(node * entries, entries), weights_, path_);
            measure.evaluate(path_, values.subspan(node * times + first, count));
        }
    }
}

void LoadHistory::columns(std::span<const Tensor> tensors, TensorColumns& columns) {
    columns.resize(length());
    if (!isCaseBased(definition_.type)) {
        columns.put(0, tensors);
        return;
    }
    for (std::size_t first = 0; first < length(); first += piece()) {
        const std::size_t count = std::min(piece(), length() - first);
        fillWeights(first, count);
        path_.resize(count);
        combine(tensors, weights_, path_);
        columns.put(first, path_);
    }
}

} // namespace solver
