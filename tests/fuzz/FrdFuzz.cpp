// Any bytes as a solver's result file: reading ends with blocks whose tables fit each other, or with a
// sentence.
#include "workbench/import/FrdReader.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

struct Checker final : workbench::FrdSink {
    Result<void> meshNodes(const workbench::FrdBlock&) override { return {}; }
    Result<void> meshElement(const workbench::FrdElement&) override { return {}; }
    bool wantsElementNodes() const override { return true; }
    bool wants(const workbench::FrdBlock& header) override { return header.name != "ERROR"; }
    Result<void> block(workbench::FrdBlock& block, std::uint64_t done, std::uint64_t total) override {
        if (done > total || block.values.size() != block.components.size()) std::abort();
        for (const auto& table : block.values) {
            if (table.size() != block.nodes.size()) std::abort();
            for (const float value : table)
                if (!std::isfinite(value)) std::abort();
        }
        return {};
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Checker sink;
    auto window = workbench::TextWindow::overMemory({reinterpret_cast<const char*>(data), size}, "input");
    const auto done = workbench::readFrd(window, sink);
    if (!done && done.error().message.empty()) std::abort();
    return 0;
}
