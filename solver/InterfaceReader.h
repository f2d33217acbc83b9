#pragma once

#include "base/Result.h"
#include "solver/ByteSource.h"
#include "solver/Definition.h"
#include "solver/RecordReader.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace solver {

/// Reads a fatigue interface file once, from its start to its end (docs/interface-file.md). Every count is
/// checked against its record and against the size of the file before anything is allocated for it.
class InterfaceReader {
  public:
    /// `source` must outlive the reader. `blockBytes` is the size of one read.
    explicit InterfaceReader(ByteSource& source, std::size_t blockBytes = 1 << 20)
        : records_(source, blockBytes) {}

    /// The sections before the nodes; once, first.
    Result<Definition> readDefinition();

    /// Replaces `batch` by the next nodes: at least one, and no more than `maxNodes`. An empty batch says
    /// that all nodes have been read and that nothing follows them.
    Result<void> readNodes(NodeBatch& batch, std::size_t maxNodes);

    /// Checksum of the whole file, once all nodes have been read.
    std::uint64_t checksum() const { return records_.checksum(); }

  private:
    bool readOptions();
    bool readMaterials();
    bool readStressLifeMaterial();
    bool readStrainLifeMaterial();
    bool readCaseLoads();
    bool readLoadFunction(std::int32_t& pointsLeft);
    bool readTimeAxis(std::int32_t totalPoints);
    bool readLoadEntry();
    bool readSteps();
    bool readNode(NodeBatch& batch);
    bool readNodeMaterials(NodeBatch& batch, std::int32_t count);
    bool readNodeTensors(NodeBatch& batch);

    bool expect(std::string_view what, std::int32_t value, std::int32_t expected);
    bool within(std::string_view what, std::int32_t value, std::int32_t low, std::int32_t high);
    bool readFlag(std::string_view what, bool& flag);
    bool readFinite(std::string_view what, double& value);

    RecordReader records_;
    Definition definition_;
    std::unordered_map<std::int32_t, std::size_t> functionByNumber_;
    std::size_t nodesRead_ = 0;
    std::int32_t lastNode_ = 0;
};

} // namespace solver
