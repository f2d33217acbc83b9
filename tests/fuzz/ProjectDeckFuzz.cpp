// Any bytes as a project deck: reading ends with a deck that can be used, or with sentences.
#include "workbench/import/ProjectDeck.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto deck =
        workbench::readProjectDeckText({reinterpret_cast<const char*>(data), size}, "input", "/nowhere");
    if (!deck) {
        if (deck.error().message.empty()) std::abort();
        return 0;
    }
    if (deck->analyses.empty()) std::abort();
    for (const auto& fatigue : deck->fatigue)
        if (fatigue.materials.empty() || fatigue.loads.empty() || fatigue.cycles < 1) std::abort();
    return 0;
}
