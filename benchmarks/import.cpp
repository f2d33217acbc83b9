#include "benchmarks/Stopwatch.h"
#include "resultfile/ResultFile.h"
#include "workbench/import/FrdReader.h"
#include "workbench/import/ResultImport.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace {

using namespace workbench;

template <class Work>
double fastestAlone(int runs, Work&& work) {
    double best = 1e30;
    for (int i = 0; i < runs; ++i)
        best = std::min(best, processorSecondsOf(work));
    return best;
}

/// The header of a stress block; the format is 1 for text and 2 for binary rows.
std::string blockHeader(int block, int nodes, int format) {
    char line[160];
    std::snprintf(line, sizeof line, "    1PSTEP %25d %11d %11d\n", block, block, 1);
    std::string text = line;
    std::snprintf(line, sizeof line, "  100CL  101%12.5E%12d                     0    1           %d\n",
                  double(block), nodes, format);
    text += line;
    text += " -4  STRESS      6    1\n";
    for (const char* name : {"SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"}) {
        std::snprintf(line, sizeof line, " -5  %-8s    1    4    1    1\n", name);
        text += line;
    }
    return text;
}

/// Digits that vary, so that nothing is predictable.
class Values {
  public:
    double next() {
        state_ = state_ * 1664525u + 1013904223u;
        return (int(state_ >> 8) - (1 << 23)) * (state_ % 7 == 0 ? 1e-9 : 1e-4);
    }

  private:
    unsigned state_ = 1;
};

/// Stress blocks of `nodes` nodes as the solver prints them.
std::string stressBlocks(int nodes, int blocks) {
    std::string text = "    1C\n";
    text.reserve(std::size_t(nodes) * std::size_t(blocks) * 86 + 4096);
    char line[160];
    Values values;
    for (int block = 1; block <= blocks; ++block) {
        text += blockHeader(block, nodes, 1);
        for (int node = 1; node <= nodes; ++node) {
            int length = std::snprintf(line, sizeof line, " -1%10d", node);
            for (int c = 0; c < 6; ++c)
                length +=
                    std::snprintf(line + length, sizeof line - std::size_t(length), "%12.5E", values.next());
            line[length] = '\n';
            text.append(line, std::size_t(length) + 1);
        }
        text += " -3\n";
    }
    return text + " 9999\n";
}

/// The same blocks in binary.
std::string binaryBlocks(int nodes, int blocks) {
    std::string bytes = "    1C\n";
    Values values;
    const auto append = [&](const void* value) { bytes.append(static_cast<const char*>(value), 4); };
    for (int block = 1; block <= blocks; ++block) {
        bytes += blockHeader(block, nodes, 2);
        for (int node = 1; node <= nodes; ++node) {
            append(&node);
            for (int c = 0; c < 6; ++c) {
                const auto value = static_cast<float>(values.next());
                append(&value);
            }
        }
    }
    return bytes + " 9999\n";
}

bool writeFile(const std::filesystem::path& path, const std::string& bytes) {
    std::FILE* file = std::fopen(path.string().c_str(), "wb");
    if (!file) return false;
    const bool good = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && good;
}

/// Every byte of a file, a megabyte at a time, into fresh memory as large as one of its blocks, as the tables
/// of a reader are.
std::size_t readBytes(const std::filesystem::path& path, std::size_t blockBytes) {
    std::FILE* file = std::fopen(path.string().c_str(), "rb");
    if (!file) return 0;
    std::setvbuf(file, nullptr, _IONBF, 0);
    const auto memory = std::make_unique_for_overwrite<char[]>(blockBytes);
    std::size_t total = 0, at = 0;
    while (true) {
        const std::size_t wanted = std::min<std::size_t>(1 << 20, blockBytes - at);
        const std::size_t got = std::fread(memory.get() + at, 1, wanted, file);
        if (got == 0) break;
        total += got;
        at = (at + got) % blockBytes;
    }
    std::fclose(file);
    return total;
}

std::size_t countLines(const std::string& text) {
    std::size_t lines = 0;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (const void* found = std::memchr(at, '\n', std::size_t(end - at))) {
        at = static_cast<const char*>(found) + 1;
        ++lines;
    }
    return lines;
}

struct Discard final : FrdSink {
    std::size_t values = 0;
    Result<void> meshNodes(const FrdBlock&) override { return {}; }
    Result<void> meshElement(const FrdElement&) override { return {}; }
    bool wants(const FrdBlock&) override { return true; }
    Result<void> block(FrdBlock& block, std::uint64_t, std::uint64_t) override {
        values += block.nodes.size() * block.values.size();
        return {};
    }
};

void require(const Result<void>& done) {
    if (done) return;
    std::fprintf(stderr, "%s\n", done.error().message.c_str());
    std::exit(1);
}

/// The whole way of a result file, from the disk to a result file of ours.
void store(const std::filesystem::path& source, const std::filesystem::path& target, int nodes) {
    std::vector<std::int32_t> numbers(std::size_t(nodes), 0);
    std::iota(numbers.begin(), numbers.end(), 1);
    auto writer = resultfile::Writer::create(target, "Benchmark", "bench_import");
    if (!writer) require(writer.error());
    require(writer->setMesh({numbers, {}, {}}));
    auto window = TextWindow::openFile(source);
    if (!window) require(window.error());
    const std::vector<SolverStep> steps(1);
    const std::vector<std::string> cases{"Step 1"};
    ResultMesh mesh;
    mesh.nodeNumbers = numbers;
    ResultImport import(*writer, mesh, steps, cases, source.string(), {});
    require(readFrd(*window, import));
    require(import.finish());
    require(writer->commit());
}

} // namespace

int main() {
    constexpr int kNodes = 1000000;
    constexpr int kBlocks = 3;
    const std::string text = stressBlocks(kNodes, kBlocks);
    const double megabytes = double(text.size()) / 1e6;

    std::size_t lines = 0;
    const double scan = fastestAlone(5, [&] { lines = countLines(text); });
    Discard sink;
    const double parse = fastestAlone(5, [&] {
        sink.values = 0;
        TextWindow window = TextWindow::overMemory(text, "benchmark.frd");
        require(readFrd(window, sink));
    });
    const auto folder = std::filesystem::temp_directory_path() /
                        ("vexa-bench-import-" + std::to_string(lines) + "-" +
                         std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
    std::filesystem::create_directory(folder);
    if (!writeFile(folder / "a.frd", text) || !writeFile(folder / "b.frd", binaryBlocks(kNodes, kBlocks))) {
        std::fprintf(stderr, "cannot write into %s\n", folder.string().c_str());
        return 1;
    }
    const double stored = fastest(2, [&] { store(folder / "a.frd", folder / "a.lmop", kNodes); });
    std::size_t binaryBytes = 0;
    const std::size_t blockBytes = std::size_t(kNodes) * 7 * sizeof(float);
    const double reading = fastestAlone(5, [&] { binaryBytes = readBytes(folder / "b.frd", blockBytes); });
    const double binary = fastestAlone(5, [&] {
        auto window = TextWindow::openFile(folder / "b.frd");
        if (!window) require(window.error());
        require(readFrd(*window, sink));
    });
    std::filesystem::remove_all(folder);

    std::printf("import of a result file: %d nodes, %zu values, %zu lines, %.0f MB of text\n", kNodes,
                sink.values, lines, megabytes);
    std::printf("  line ends alone   %8.1f ms  %7.0f MB/s\n", scan * 1e3, megabytes / scan);
    std::printf("  parsing           %8.1f ms  %7.0f MB/s  %.3f of line ends (limit 0.12, goal 0.2)\n",
                parse * 1e3, megabytes / parse, scan / parse);
    std::printf("  parsing, storing  %8.1f ms  %7.0f MB/s  from file to result file, flushed to the disk\n",
                stored * 1e3, megabytes / stored);
    const double binaryMegabytes = double(binaryBytes) / 1e6;
    std::printf("the same in binary: %.0f MB\n", binaryMegabytes);
    std::printf("  reading to memory %8.1f ms  %7.0f MB/s\n", reading * 1e3, binaryMegabytes / reading);
    std::printf("  reading, parsing  %8.1f ms  %7.0f MB/s  %.3f of reading (limit 0.5)\n", binary * 1e3,
                binaryMegabytes / binary, reading / binary);
    return 0;
}
