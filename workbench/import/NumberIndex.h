#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace workbench {

/// Finds the position of a number in an ascending list: by a table where the numbers lie dense (they nearly
/// always do), by bisection otherwise. Looks into the caller's list, which must outlive it unchanged.
class NumberIndex {
  public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

    NumberIndex() = default;
    explicit NumberIndex(std::span<const std::int32_t> ascending)
        : numbers_(ascending) {
        if (numbers_.empty()) return;
        first_ = numbers_.front();
        const std::uint64_t range = std::uint64_t(std::int64_t{numbers_.back()} - first_) + 1;
        if (range > 4 * std::uint64_t{numbers_.size()} + 1024) return;
        table_.assign(range, kNone);
        for (std::size_t i = 0; i < numbers_.size(); ++i)
            table_[std::size_t(std::int64_t{numbers_[i]} - first_)] = static_cast<std::uint32_t>(i);
    }

    /// Position of `number`, kNone when the list does not hold it.
    std::uint32_t find(std::int32_t number) const {
        if (!table_.empty()) {
            const std::uint64_t place = std::uint64_t(std::int64_t{number} - first_);
            return place < table_.size() ? table_[place] : kNone;
        }
        const auto found = std::lower_bound(numbers_.begin(), numbers_.end(), number);
        return found != numbers_.end() && *found == number
                   ? static_cast<std::uint32_t>(found - numbers_.begin())
                   : kNone;
    }

  private:
    std::span<const std::int32_t> numbers_;
    std::vector<std::uint32_t> table_;
    std::int64_t first_ = 0;
};

} // namespace workbench
