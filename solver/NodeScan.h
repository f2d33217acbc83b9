#pragma once

#include "base/Result.h"
#include "solver/Definition.h"
#include "solver/InterfaceReader.h"

#include <algorithm>
#include <cstddef>

namespace solver {

/// Reads all nodes to the end of the file, in batches of a few megabytes, and calls onBatch(batch) for each.
template <class OnBatch>
Result<void> scanNodes(InterfaceReader& reader, const Definition& definition, OnBatch&& onBatch) {
    constexpr std::size_t kBatchBytes = 1 << 21;
    const std::size_t bytesPerNode = definition.loadsPerNode() * definition.tensorsPerLoad() * sizeof(Tensor);
    const std::size_t maxNodes = std::max<std::size_t>(1, kBatchBytes / bytesPerNode);
    NodeBatch batch;
    for (;;) {
        if (auto read = reader.readNodes(batch, maxNodes); !read) return read;
        if (batch.size() == 0) return {};
        onBatch(static_cast<const NodeBatch&>(batch));
    }
}

} // namespace solver
