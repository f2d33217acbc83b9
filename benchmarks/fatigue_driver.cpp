// The fatigue driver on a block of hexahedra: interface file, extraction and memory, each beside its limit
// in the same run.
//
//   bench_fatigue_driver [cells a side = 100] [steps = 20] [folder = the system's temporary one]

#include "framework/files/PathMap.h"
#include "module/fatigue/GpsFatigueSolver.h"
#include "tests/support/MemoryHost.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

constexpr ItrKey kAnalysis = 1, kMaterial = 2, kProperty = 3, kCurve = 4, kDefinition = 5;

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "fatigue_driver: %s\n", what.c_str());
    std::exit(1);
}

/// What the host spends on reading tables, which is not the driver's time, and how much of them it holds.
struct HostLedger {
    double loadSeconds = 0;
    std::size_t bytes = 0;
    std::size_t mostBytes = 0;
};
HostLedger g_ledger;

void fillCorners(std::vector<float>& values, unsigned id, int step) {
    const float scale = static_cast<float>(id % 100 + static_cast<unsigned>(step)) / 64.0f;
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<float>(i * 2654435761u >> 8 & 4095) * scale;
}

/// A table with one value a corner that is in memory only between Load and Release.
class CornerResult : public CVResult {
  public:
    CornerResult(CPOHVCase* owner, unsigned id, int step, std::size_t corners)
        : owner_(owner)
        , id_(id)
        , step_(step)
        , corners_(corners) {}
    CPOHAnalysis* GetAnalysis() const override { return owner_->GetCase()->GetAnalysis(); }
    CPOHCase* GetCase() const override { return owner_->GetCase(); }
    CPOHVCase* GetVCase() const override { return owner_; }
    unsigned GetId() const override { return id_; }
    int Load() override {
        const double start = now();
        values_.resize(corners_);
        fillCorners(values_, id_, step_);
        table_ = {id_, ResultLocation::ElementCorner, values_, {}};
        g_ledger.bytes += corners_ * sizeof(float);
        g_ledger.mostBytes = std::max(g_ledger.mostBytes, g_ledger.bytes);
        g_ledger.loadSeconds += now() - start;
        return 1;
    }
    void Release() override {
        values_ = std::vector<float>();
        g_ledger.bytes -= corners_ * sizeof(float);
    }
    const T_RESULT_TABLE_D& GetTable() const override { return table_; }

  private:
    CPOHVCase* owner_;
    unsigned id_;
    int step_;
    std::size_t corners_;
    std::vector<float> values_;
    T_RESULT_TABLE_D table_;
};

void makeBlock(support::MemoryMesh& mesh, std::uint32_t cells) {
    const std::uint32_t side = cells + 1;
    const std::size_t nodes = std::size_t{side} * side * side, elements = std::size_t{cells} * cells * cells;
    mesh.nodeKeys.reserve(nodes);
    mesh.nodeNumbers.reserve(nodes);
    mesh.nodePositions.reserve(nodes);
    mesh.elementKeys.reserve(elements);
    mesh.elementNumbers.reserve(elements);
    mesh.elementTypes.reserve(elements);
    mesh.elementPropertyKeys.reserve(elements);
    mesh.elementNodeOffsets.reserve(elements + 1);
    mesh.elementNodes.reserve(8 * elements);
    std::int32_t number = 0;
    for (std::uint32_t z = 0; z < side; ++z)
        for (std::uint32_t y = 0; y < side; ++y)
            for (std::uint32_t x = 0; x < side; ++x)
                mesh.addNode(++number,
                             {static_cast<double>(x), static_cast<double>(y), static_cast<double>(z)});
    number = 0;
    std::vector<std::uint32_t> corners(8);
    for (std::uint32_t z = 0; z < cells; ++z)
        for (std::uint32_t y = 0; y < cells; ++y)
            for (std::uint32_t x = 0; x < cells; ++x) {
                const std::uint32_t n = (z * side + y) * side + x, up = side * side;
                corners = {n,      n + 1,      n + side + 1,      n + side,
                           n + up, n + up + 1, n + up + side + 1, n + up + side};
                mesh.addElement(++number, ElementType::Hex8, kProperty, corners);
            }
}

std::size_t bytesOfModel(const support::MemoryMesh& mesh) {
    const auto bytes = [](const auto& values) { return values.size() * sizeof(values[0]); };
    return bytes(mesh.nodeKeys) + bytes(mesh.nodeNumbers) + bytes(mesh.nodePositions) +
           bytes(mesh.elementKeys) + bytes(mesh.elementNumbers) + bytes(mesh.elementTypes) +
           bytes(mesh.elementPropertyKeys) + bytes(mesh.elementNodeOffsets) + bytes(mesh.elementNodes);
}

/// The highest resident size of this process so far.
std::size_t peakBytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmHWM:") {
            std::size_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    fail("cannot read the peak memory from /proc/self/status");
}

/// The corner values of every load added into the nodes, one component after another, and nothing else.
double scatterSeconds(const support::MemoryMesh& mesh, int steps) {
    std::vector<float> values(mesh.elementNodes.size());
    std::vector<float> sums(mesh.nodeNumbers.size());
    double seconds = 0;
    for (int step = 0; step < steps; ++step)
        for (unsigned id = 312101; id <= 312106; ++id) {
            fillCorners(values, id, step);
            const double start = now();
            const std::uint32_t* const nodes = mesh.elementNodes.data();
            for (std::size_t i = 0; i < values.size(); ++i)
                sums[nodes[i]] += values[i];
            seconds += now() - start;
        }
    if (sums[0] < 0) fail("the sums are wrong");
    return seconds;
}

/// Copies a file in blocks of 1 MiB; the time of creating, writing and closing alone.
double rawWriteSeconds(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::vector<char> block(std::size_t{1} << 20);
    std::ifstream in(from, std::ios::binary);
    ::sync();
    double start = now();
    const int file = ::open(to.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600);
    double seconds = now() - start;
    while (in.read(block.data(), static_cast<std::streamsize>(block.size())), in.gcount() > 0) {
        const auto count = static_cast<std::size_t>(in.gcount());
        start = now();
        if (::write(file, block.data(), count) != static_cast<ssize_t>(count))
            fail("cannot write " + to.string());
        seconds += now() - start;
    }
    start = now();
    if (::close(file) != 0) fail("cannot close " + to.string());
    return seconds + now() - start;
}

/// Times of a run by what the progress bar is told.
struct RunTimes {
    double gatherStart = 0, gatherEnd = 0, writeStart = 0, writeEnd = 0;

    void hear(const std::wstring& event) {
        if (event == L"IDS_VEXAGPS_FATIGUE_LOAD_GENERATE" && gatherStart == 0) {
            g_ledger.loadSeconds = 0;
            gatherStart = now();
        }
        if (event == L"IDS_VEXAGPS_FATIGUE_WRITE_SOLVER_FILE") {
            gatherEnd = now();
            ::sync(); // earlier pages must not be written back while the file is measured
            writeStart = now();
        }
        if (event == L"IDS_VEXAGPS_FATIGUE_SOLVE_WKM") writeEnd = now();
    }
};

void makeModel(support::MemoryDocument& doc, std::uint32_t cells, int steps) {
    makeBlock(doc.mesh, cells);
    doc.analyses.put({kAnalysis, L"Block", 106, 0});
    doc.materials.put({kMaterial, 1, L"Steel", 2e5, 0.3, 0});
    doc.properties.put({kProperty, 1, L"Block", PropertyType::Solid, 0, 0, {kMaterial}});
    doc.curves.put({kCurve, L"Curve", {}});
    auto& resultCase = doc.results.addAnalysis(kAnalysis, L"Block").addCase(11, L"Time");
    for (int s = 0; s < steps; ++s) {
        support::MemoryStep& step = resultCase.addStep(static_cast<ItrKey>(100 + s), std::to_wstring(s));
        for (const unsigned family : {312100u, 311100u})
            for (const unsigned c : {1u, 2u, 3u, 4u, 5u, 6u, 14u})
                step.put(family + c,
                         std::make_unique<CornerResult>(&step, family + c, s, doc.mesh.elementNodes.size()));
    }
    tagTFatg definition;
    definition.key = kDefinition;
    definition.analysisKey = definition.resultAnalysisKey = kAnalysis;
    definition.fatigueType = FatigueType::StressLifeSteps;
    definition.stressLifeMaterials = {{kMaterial, 0, 300, 500, {900, -0.1}, kCurve}};
    definition.loads = {{L"Time", L"", 1, 0}};
    doc.fatigues.put(definition);
}

void measure(std::uint32_t cells, int steps, const std::filesystem::path& folder) {
    support::MemoryHost host;
    support::MemoryDocument doc;
    makeModel(doc, cells, steps);
    doc.path = framework::widePath(folder / "block.wkm");
    host.programPath =
        doc.path; // there is no solver below a file: the run ends once the interface file is closed
    RunTimes times;
    host.progress.listener = [&](const std::wstring& event) { times.hear(event); };

    std::vector<std::uint64_t> definitions{kDefinition};
    CGpsFatigueSolver::Instance().RunSolver(&doc, definitions);
    if (times.writeEnd == 0)
        fail("the run ended early" +
             (host.errors.empty() ? "" : ": " + framework::nativePath(host.errors[0]).string()));
    const std::size_t peak = peakBytes();

    const std::filesystem::path file = folder / "FATIGUE.76";
    const double megabytes = static_cast<double>(std::filesystem::file_size(file)) / 1e6;
    const double write = times.writeEnd - times.writeStart;
    const double raw = rawWriteSeconds(file, folder / "raw.bin");
    const double gather = times.gatherEnd - times.gatherStart - g_ledger.loadSeconds;
    const double scatter = scatterSeconds(doc.mesh, steps);
    const std::size_t tables =
        doc.mesh.nodeNumbers.size() * 6 * sizeof(float) * static_cast<std::size_t>(steps);
    const std::size_t model = bytesOfModel(doc.mesh);
    const std::size_t floor = tables + model + g_ledger.mostBytes;

    std::printf("%zu nodes, %zu hexahedra, %d steps\n", doc.mesh.nodeNumbers.size(),
                doc.mesh.elementNumbers.size(), steps);
    std::printf("interface file  %.0f MB: %.2f s, %.0f MB/s; raw 1 MiB blocks %.0f MB/s; ratio %.2f (at "
                "least 0.40)\n",
                megabytes, write, megabytes / write, megabytes / raw, raw / write);
    std::printf("extraction      %.2f s; bare corner scatter %.2f s; ratio %.2f (at least 0.50)\n", gather,
                scatter, scatter / gather);
    std::printf(
        "peak memory     %.0f MB; value tables %.0f + model %.0f + result tables in use %.0f MB; ratio %.2f "
        "(at most 1.25)\n",
        static_cast<double>(peak) / 1e6, static_cast<double>(tables) / 1e6, static_cast<double>(model) / 1e6,
        static_cast<double>(g_ledger.mostBytes) / 1e6,
        static_cast<double>(peak) / static_cast<double>(floor));
}

} // namespace

int main(int argc, char** argv) {
    const int cells = argc > 1 ? std::atoi(argv[1]) : 100;
    const int steps = argc > 2 ? std::atoi(argv[2]) : 20;
    if (cells < 1 || cells > 400 || steps < 1)
        fail("usage: bench_fatigue_driver [cells a side] [steps] [folder]");
    std::string folder =
        ((argc > 3 ? std::filesystem::path(argv[3]) : std::filesystem::temp_directory_path()) /
         "vexa-bench-XXXXXX")
            .string();
    if (!::mkdtemp(folder.data())) fail("cannot make " + folder);
    measure(static_cast<std::uint32_t>(cells), steps, folder);
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    return 0;
}
