#include "solver/BatchPipeline.h"

#include "solver/NodeEvaluator.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <string>
#include <utility>
#include <vector>

namespace solver {
namespace {

/// Tensors of one batch: enough to make starting a task cheap.
constexpr std::size_t kBatchBytes = 1 << 21;

/// A batch on its way, with everything that its evaluation needs.
class BatchTask {
  public:
    BatchTask(const Definition& definition, const EvaluationPlan& plan)
        : plan_(plan)
        , evaluator_(definition, plan) {}

    NodeBatch& batch() { return batch_; }
    bool pending() const { return done_.valid(); }
    void start(std::launch how) {
        done_ = std::async(how, [this] { return evaluator_.evaluate(batch_, outcomes_); });
    }

    /// Waits for the outcomes and hands them on.
    std::optional<PipelineFailure> finish(const NodeSink& sink) {
        if (const auto evaluated = done_.get(); !evaluated) return PipelineFailure{false, evaluated.error()};
        const std::size_t corrections = plan_.corrections.size();
        for (std::size_t node = 0; node < batch_.size(); ++node) {
            std::span<const Outcome> outcomes;
            if (!materialsOf(batch_, node).empty())
                outcomes = std::span(outcomes_).subspan(node * corrections, corrections);
            if (const auto put = sink(batch_.numbers[node], outcomes); !put)
                return PipelineFailure{true, put.error()};
        }
        return std::nullopt;
    }

  private:
    const EvaluationPlan& plan_;
    NodeEvaluator evaluator_;
    NodeBatch batch_;
    std::vector<Outcome> outcomes_;
    std::future<Result<void>> done_; ///< last, so that its end is awaited before the rest goes
};

std::size_t nodesPerBatch(const Definition& definition, std::size_t historyLength) {
    const std::size_t tensors = definition.loadsPerNode() * definition.tensorsPerLoad();
    const std::size_t bytesPerNode = tensors * sizeof(Tensor) + historyLength * sizeof(double);
    return std::max<std::size_t>(1, kBatchBytes / bytesPerNode);
}

} // namespace

std::optional<PipelineFailure> evaluateNodes(InterfaceReader& reader, const Definition& definition,
                                             const EvaluationPlan& plan, unsigned threads,
                                             const NodeSink& sink) {
    const auto how = threads == 1 ? std::launch::deferred : std::launch::async;
    const std::size_t maxNodes = nodesPerBatch(definition, LoadHistory(definition).length());
    std::vector<BatchTask> ring;
    ring.reserve(threads);
    for (unsigned i = 0; i < threads; ++i)
        ring.emplace_back(definition, plan);
    // Round and round: the task that was started longest ago is finished first, then filled anew.
    for (std::size_t turn = 0;; ++turn) {
        BatchTask& task = ring[turn % ring.size()];
        if (task.pending())
            if (auto failure = task.finish(sink)) return failure;
        const auto read = reader.readNodes(task.batch(), maxNodes);
        if (read && task.batch().size() > 0) {
            task.start(how);
            continue;
        }
        // Also before a reading failure: which of two failures is told must not depend on the threads.
        for (std::size_t i = 1; i < ring.size(); ++i) {
            BatchTask& rest = ring[(turn + i) % ring.size()];
            if (!rest.pending()) continue;
            if (auto failure = rest.finish(sink)) return failure;
        }
        if (!read) return PipelineFailure{false, read.error()};
        return std::nullopt;
    }
}

} // namespace solver
