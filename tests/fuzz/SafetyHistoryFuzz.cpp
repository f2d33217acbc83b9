// Any bytes as a history of the factor of safety: columns stay equally long, and curves have their points.
#include "module/stability/SafetyHistory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    const SafetyHistory history = readSafetyHistory(in);
    if (history.shortLines.size() != std::min(history.shortLineCount, kMostNamedLines)) std::abort();
    for (const SafetySubcase& subcase : history.subcases) {
        const std::size_t rows = subcase.iterations.size();
        if (subcase.displacement.size() != rows || subcase.safety.size() != rows ||
            subcase.isConverged.size() != rows || iterationCurve(subcase).size() != rows ||
            displacementCurve(subcase).size() > rows)
            std::abort();
    }
    return 0;
}
