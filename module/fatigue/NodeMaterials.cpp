#include "module/fatigue/NodeMaterials.h"

#include <algorithm>

namespace fatigue {

void NodeMaterials::clear() {
    *this = NodeMaterials();
}

void NodeMaterials::add(std::uint64_t node, std::int32_t index) {
    pending_.push_back({node, index});
    if (pending_.size() < limit_) return;
    compact();
    limit_ = std::max(kFirstLimit, 2 * pending_.size());
}

void NodeMaterials::compact() {
    if (!std::ranges::is_sorted(pending_)) std::ranges::sort(pending_);
    const auto duplicates = std::ranges::unique(pending_);
    pending_.erase(duplicates.begin(), duplicates.end());
}

void NodeMaterials::settle() {
    for (std::size_t i = 0; i < nodes_.size(); ++i)
        pending_.push_back({nodes_[i], indices_[i]});
    compact();
    nodes_.resize(pending_.size());
    indices_.resize(pending_.size());
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        nodes_[i] = pending_[i].node;
        indices_[i] = pending_[i].index;
    }
    pending_ = std::vector<Pair>();
    next_ = 0;
}

std::span<const std::int32_t> NodeMaterials::of(std::uint64_t node) {
    if (!pending_.empty()) settle();
    std::size_t first = next_;
    if (first >= nodes_.size() || nodes_[first] != node)
        first = static_cast<std::size_t>(std::ranges::lower_bound(nodes_, node) - nodes_.begin());
    std::size_t end = first;
    while (end < nodes_.size() && nodes_[end] == node)
        ++end;
    next_ = end;
    return std::span(indices_).subspan(first, end - first);
}

} // namespace fatigue
