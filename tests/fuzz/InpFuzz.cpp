// Any bytes as a solver deck: reading ends with a model that fits together, or with a sentence.
#include "workbench/import/InpReader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>

namespace {

bool strictlyAscends(const std::vector<std::int32_t>& numbers) {
    return std::adjacent_find(numbers.begin(), numbers.end(), std::greater_equal<>()) == numbers.end();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto deck =
        workbench::readInpText({reinterpret_cast<const char*>(data), size}, "input", "/nowhere");
    if (!deck) {
        if (deck.error().message.empty()) std::abort();
        return 0;
    }
    if (!strictlyAscends(deck->nodeNumbers) || !strictlyAscends(deck->elementNumbers)) std::abort();
    if (deck->elementNodeOffsets.size() != deck->elementNumbers.size() + 1) std::abort();
    for (const std::uint32_t node : deck->elementNodes)
        if (node >= deck->nodeNumbers.size()) std::abort();
    for (const auto& set : deck->nodeSets)
        if (!std::includes(deck->nodeNumbers.begin(), deck->nodeNumbers.end(), set.numbers.begin(),
                           set.numbers.end()))
            std::abort();
    return 0;
}
