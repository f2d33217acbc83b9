#include "solver/BatchPipeline.h"

#include "solver/NodeEvaluator.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace solver {
namespace {

/// Tensors of one batch: what was read is still in the processor's cache when it is evaluated.
constexpr std::size_t kBatchBytes = 1 << 18;

/// A batch on its way, with everything that its evaluation needs.
class BatchTask {
  public:
    BatchTask(const Definition& definition, const EvaluationPlan& plan)
        : plan_(plan)
        , evaluator_(definition, plan) {}

    NodeBatch& batch() { return batch_; }

    void evaluate() noexcept {
        try {
            evaluated_ = evaluator_.evaluate(batch_, outcomes_);
        } catch (...) {
            thrown_ = std::current_exception();
        }
    }

    std::optional<PipelineFailure> handOn(const NodeSink& sink) {
        if (thrown_) std::rethrow_exception(thrown_);
        if (!evaluated_) return PipelineFailure{false, evaluated_.error()};
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
    Result<void> evaluated_;
    std::exception_ptr thrown_;
};

/// Batches in the order of the file, in places that are used round and round. Each batch is filled, then
/// taken by whichever thread is free, then evaluated, then handed on: the counts never overtake each other.
class BatchRing {
  public:
    BatchRing(const Definition& definition, const EvaluationPlan& plan, unsigned threads)
        : evaluated_(threads == 1 ? 1 : 2 * threads) {
        tasks_.reserve(evaluated_.size());
        for (std::size_t i = 0; i < evaluated_.size(); ++i)
            tasks_.emplace_back(definition, plan);
        try {
            for (unsigned i = 1; i < threads; ++i)
                workers_.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            // Those that the system grants will do.
        }
    }
    BatchRing(const BatchRing&) = delete;
    BatchRing& operator=(const BatchRing&) = delete;
    ~BatchRing() {
        {
            const std::lock_guard lock(mutex_);
            stopped_ = true;
        }
        filledOrStopped_.notify_all();
    }

    bool empty() const { return handedOn_ == filled_; }
    bool full() const { return filled_ - handedOn_ == tasks_.size(); }

    /// The place of the next batch, when the ring is not full.
    NodeBatch& next() { return place(filled_).batch(); }
    void fill() {
        {
            const std::lock_guard lock(mutex_);
            ++filled_;
        }
        filledOrStopped_.notify_one();
    }

    bool oldestIsEvaluated() {
        const std::lock_guard lock(mutex_);
        return evaluated_[handedOn_ % evaluated_.size()];
    }
    std::optional<PipelineFailure> handOnOldest(const NodeSink& sink) {
        auto failure = place(handedOn_).handOn(sink);
        const std::lock_guard lock(mutex_);
        evaluated_[handedOn_++ % evaluated_.size()] = false;
        return failure;
    }

    /// Evaluates a batch on the calling thread, or waits for the oldest one when all are taken.
    void help() {
        std::unique_lock lock(mutex_);
        if (taken_ < filled_)
            evaluateNext(lock);
        else
            oldestEvaluated_.wait(lock, [this] { return evaluated_[handedOn_ % evaluated_.size()]; });
    }

  private:
    BatchTask& place(std::size_t batch) { return tasks_[batch % tasks_.size()]; }

    void work() {
        for (std::unique_lock lock(mutex_);;) {
            filledOrStopped_.wait(lock, [this] { return stopped_ || taken_ < filled_; });
            if (stopped_) return;
            evaluateNext(lock);
            oldestEvaluated_.notify_one();
        }
    }

    void evaluateNext(std::unique_lock<std::mutex>& lock) {
        const std::size_t batch = taken_++;
        lock.unlock();
        place(batch).evaluate();
        lock.lock();
        evaluated_[batch % evaluated_.size()] = true;
    }

    std::vector<BatchTask> tasks_;
    std::mutex mutex_; ///< of all below
    std::condition_variable filledOrStopped_, oldestEvaluated_;
    std::vector<bool> evaluated_;
    std::size_t filled_ = 0, taken_ = 0;
    bool stopped_ = false;
    std::size_t handedOn_ = 0;          ///< of the calling thread alone
    std::vector<std::jthread> workers_; ///< last, so that they end before the rest goes
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
    const std::size_t maxNodes = nodesPerBatch(definition, LoadHistory(definition).length());
    BatchRing ring(definition, plan, threads);
    std::optional<Error> unreadable;
    for (bool more = true; more || !ring.empty();) {
        if (!ring.empty() && ring.oldestIsEvaluated()) {
            if (auto failure = ring.handOnOldest(sink)) return failure;
        } else if (more && !ring.full()) {
            const auto read = reader.readNodes(ring.next(), maxNodes);
            if (!read) unreadable = read.error();
            more = read && ring.next().size() > 0;
            if (more) ring.fill();
        } else {
            ring.help();
        }
    }
    // Last: which of two failures is told must not depend on the threads.
    if (unreadable) return PipelineFailure{false, std::move(*unreadable)};
    return std::nullopt;
}

} // namespace solver
