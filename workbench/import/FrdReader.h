#pragma once

#include "base/Result.h"
#include "workbench/import/TextWindow.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// One result block of a result file: one entity of one increment.
struct FrdBlock {
    std::string name;                       ///< as "STRESS"
    int step = 1;                           ///< number of the step in the deck, from 1
    int increment = 1;                      ///< of the step
    int mode = 0;                           ///< number of the mode; 0 when the block is none
    double value = 0;                       ///< time, frequency or load factor
    std::string place;                      ///< "file:line" of its header
    std::vector<std::string> components;    ///< names of the components that have values, in order
    std::vector<std::int32_t> nodes;        ///< as the file orders them
    std::vector<std::vector<float>> values; ///< a table a component, each as long as `nodes`
};

/// One element of the mesh that a result file describes.
struct FrdElement {
    std::int32_t number = 0;
    int type = 0; ///< the file's own code: 1 hexahedron of 8 nodes, 4 of 20, ...
    /// In the order of the file, as many as stand there; empty where the sink does not want them.
    std::span<const std::int32_t> nodes;
};

/// Takes what a result file holds, in the order of the file. A failure ends the reading.
class FrdSink {
  public:
    virtual ~FrdSink() = default;
    /// The nodes of the mesh with their coordinates as components X, Y, Z. Gone after the call.
    virtual Result<void> meshNodes(const FrdBlock& nodes) = 0;
    virtual Result<void> meshElement(const FrdElement& element) = 0;
    /// Whether elements shall come with their nodes.
    virtual bool wantsElementNodes() const { return false; }
    /// Whether the values of a block are wanted; the others are passed over unread.
    virtual bool wants(const FrdBlock& header) = 0;
    /// The block may be changed, and is gone after the call. `done` of `total` bytes are read.
    virtual Result<void> block(FrdBlock& block, std::uint64_t done, std::uint64_t total) = 0;
};

/// Reads a CalculiX result file, in ASCII of long or short format or binary, in one pass with one block in
/// memory. Fails with "file:line: ..." (of a binary file: the last line of text) on values that are not
/// finite, on broken lines, and on a file without its end mark.
Result<void> readFrd(TextWindow& window, FrdSink& sink);

} // namespace workbench
