#include "host/MeshPositions.h"

#include <algorithm>

std::size_t positionOfKey(std::span<const std::uint32_t> keys, ItrKey key) {
    if (keys.empty() || key < keys.front() || key > keys.back()) return kNoPosition;
    // Keys are given out in rows, so the distance from the first one mostly is the position.
    const auto guess = static_cast<std::size_t>(key - keys.front());
    if (guess < keys.size() && keys[guess] == key) return guess;
    const auto found = std::lower_bound(keys.begin(), keys.end(), key);
    return *found == key ? static_cast<std::size_t>(found - keys.begin()) : kNoPosition;
}

std::vector<std::uint32_t> positionsOfNumbers(std::span<const std::int32_t> numbers,
                                              std::vector<std::int32_t> wanted) {
    if (!std::ranges::is_sorted(wanted)) std::ranges::sort(wanted);
    std::vector<std::uint32_t> positions;
    positions.reserve(std::min(wanted.size(), numbers.size()));
    auto next = numbers.begin();
    for (const std::int32_t number : wanted) {
        // Sets mostly hold runs: the number after the last one found is tried before a search.
        if (next != numbers.end() && *next < number) next = std::lower_bound(next, numbers.end(), number);
        if (next == numbers.end()) break;
        if (*next == number) positions.push_back(static_cast<std::uint32_t>(next++ - numbers.begin()));
    }
    return positions;
}
