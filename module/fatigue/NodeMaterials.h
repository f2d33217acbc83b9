#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace fatigue {

/// Which materials meet at a node: unique (node, material index) pairs, sorted. Answers like an ordered
/// multimap from node to index whose duplicates are dropped.
class NodeMaterials {
  public:
    void clear();
    void add(std::uint64_t node, std::int32_t index);
    /// The indices of a node, ascending, each once. Valid until the next add or clear. Asking for nodes in
    /// ascending order takes constant time each.
    std::span<const std::int32_t> of(std::uint64_t node);

  private:
    struct Pair {
        std::uint64_t node;
        std::int32_t index;
        auto operator<=>(const Pair&) const = default;
    };
    void compact();
    void settle();

    static constexpr std::size_t kFirstLimit = std::size_t{1} << 16;
    std::vector<Pair> pending_;
    std::size_t limit_ =
        kFirstLimit; ///< pending pairs before duplicates are dropped, so that memory follows the answers
    std::vector<std::uint64_t> nodes_; ///< node of each index
    std::vector<std::int32_t> indices_;
    std::size_t next_ = 0; ///< where the answer after the last one begins
};

} // namespace fatigue
