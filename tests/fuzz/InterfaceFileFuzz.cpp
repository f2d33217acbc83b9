// Any bytes as a fatigue interface file: reading and evaluating them ends, without a fault and within memory
// that the bytes justify.
#include "solver/BatchPipeline.h"
#include "solver/InterfaceReader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto source = solver::openMemory("input", std::as_bytes(std::span(data, size)));
    solver::InterfaceReader reader(*source, 256);
    const auto definition = reader.readDefinition();
    if (!definition) return 0;
    std::vector<std::string> notes;
    const auto plan = solver::makePlan(*definition, notes);
    if (!plan) return 0;
    const auto sink = [](std::int32_t, std::span<const solver::Outcome>) -> Result<void> { return {}; };
    solver::evaluateNodes(reader, *definition, *plan, 1, sink);
    return 0;
}
