#include "workbench/results/CombinedItems.h"

#include <algorithm>
#include <iterator>

namespace workbench {

using resultfile::Location;

std::uint64_t CombinedItems::valueCountOf(const ItemSet& set) const {
    if (set.location == Location::Node) return set.whole ? mesh_.nodeCount() : set.items.size();
    if (set.whole) return mesh_.elementNodes.size();
    std::uint64_t count = 0;
    for (const std::uint32_t element : set.items)
        count += cornersOf(element);
    return count;
}

const ItemSet* CombinedItems::keep(ItemSet set) {
    const auto same = std::ranges::find_if(sets_, [&](const auto& known) {
        return known->location == set.location && known->whole == set.whole && known->items == set.items;
    });
    if (same != sets_.end()) return same->get();
    set.valueCount = valueCountOf(set);
    sets_.push_back(std::make_unique<const ItemSet>(std::move(set)));
    return sets_.back().get();
}

Result<const ItemSet*> CombinedItems::of(ResultSource& source, const resultfile::Component& component) {
    const auto [known, isNew] = ofFiles_.try_emplace({&source, component.location, component.items}, nullptr);
    if (!isNew) return known->second;
    auto items = source.itemsOf(mesh_, component);
    if (!items) {
        ofFiles_.erase(known);
        return items.error();
    }
    ItemSet set{component.location, !items->has_value(), {}, 0};
    if (items->has_value()) set.items = std::move(**items);
    return known->second = keep(std::move(set));
}

const ItemSet* CombinedItems::common(const ItemSet* a, const ItemSet* b) {
    if (a == b || b->whole) return a;
    if (a->whole) return b;
    const auto [known, isNew] = common_.try_emplace({a, b}, nullptr);
    if (!isNew) return known->second;
    ItemSet both{a->location, false, {}, 0};
    std::ranges::set_intersection(a->items, b->items, std::back_inserter(both.items));
    return known->second = keep(std::move(both));
}

Selection CombinedItems::select(const ItemSet* set, const ItemSet* part) {
    if (set == part) return {};
    const auto [known, isNew] = selections_.try_emplace({set, part}, nullptr);
    if (!isNew) return known->second;
    std::vector<std::uint32_t> places;
    places.reserve(part->valueCount);
    const bool corner = set->location == Location::ElementCorner;
    std::uint32_t place = 0;
    std::size_t at = 0;
    for (const std::uint32_t item : part->items) {
        for (; (set->whole ? static_cast<std::uint32_t>(at) : set->items[at]) != item; ++at)
            place += corner ? static_cast<std::uint32_t>(
                                  cornersOf(set->whole ? static_cast<std::uint32_t>(at) : set->items[at]))
                            : 1;
        const std::size_t values = corner ? cornersOf(item) : 1;
        for (std::size_t i = 0; i < values; ++i)
            places.push_back(place++);
        ++at;
    }
    return known->second = std::make_shared<const std::vector<std::uint32_t>>(std::move(places));
}

Result<void> SelectedStream::next(std::span<float> out, std::span<float> space) {
    if (!selection_) return stream_.next(out);
    if (out.empty()) return {};
    const auto wanted = std::span(*selection_).subspan(at_, out.size());
    const std::uint64_t end = std::uint64_t{wanted.back()} + 1;
    std::size_t taken = 0;
    while (stream_.position() < end) {
        const std::uint64_t first = stream_.position();
        const auto piece = space.first(std::min<std::uint64_t>(space.size(), end - first));
        if (auto read = stream_.next(piece); !read) return read;
        for (; taken < wanted.size() && wanted[taken] < first + piece.size(); ++taken)
            out[taken] = piece[wanted[taken] - first];
    }
    at_ += out.size();
    return {};
}

Result<void> SelectedStream::finish(std::span<float> space) {
    while (stream_.position() < stream_.count()) {
        const std::uint64_t left = stream_.count() - stream_.position();
        const auto piece = space.first(std::min<std::uint64_t>(space.size(), left));
        if (auto read = stream_.next(piece); !read) return read;
    }
    return {};
}

} // namespace workbench
