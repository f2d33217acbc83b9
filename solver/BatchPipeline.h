#pragma once

#include "base/Result.h"
#include "solver/Definition.h"
#include "solver/Evaluation.h"
#include "solver/InterfaceReader.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace solver {

/// Takes a node and its outcomes, in the order of the file; no outcomes for a node without material.
using NodeSink = std::function<Result<void>(std::int32_t node, std::span<const Outcome> outcomes)>;

/// Why a pipeline stopped, and which end of it failed.
struct PipelineFailure {
    bool ofSink = false;
    Error error;
};

/// Reads the nodes in batches, evaluates them on `threads` threads, of which the calling one is one, and
/// hands the outcomes on in order. They do not depend on the number of threads. Memory is bounded by batches,
/// not by nodes.
std::optional<PipelineFailure> evaluateNodes(InterfaceReader& reader, const Definition& definition,
                                             const EvaluationPlan& plan, unsigned threads,
                                             const NodeSink& sink);

} // namespace solver
