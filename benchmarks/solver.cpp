// The fatigue solver: time a plane of the critical-plane search beside projecting and counting alone, and a
// whole run over a large file beside reading the same file, from the disk and from memory.
// Arguments: nodes of the run (default 1000000).

#include "solver/CriticalPlane.h"
#include "solver/InterfaceReader.h"
#include "solver/PlaneSet.h"
#include "solver/Program.h"

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using solver::Tensor;

constexpr std::size_t kPlaneNodes = 50, kPlaneSteps = 100;
constexpr int kSteps = 20;

/// Uniform in -1 .. 1 (splitmix64, S. Vigna).
class Random {
  public:
    double next() {
        std::uint64_t z = state_ += 0x9E3779B97F4A7C15u;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
        z = (z ^ z >> 27) * 0x94D049BB133111EBu;
        return static_cast<double>((z ^ z >> 31) >> 11) * 0x1p-52 - 1;
    }

  private:
    std::uint64_t state_ = 1;
};

/// Seconds on the wall's clock, and of processor time over all threads, which other programs disturb less.
struct Elapsed {
    double wall, processor;
};

Elapsed measure(const std::function<void()>& work) {
    const auto now = [](clockid_t clock) {
        timespec time{};
        ::clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    };
    const double wall = now(CLOCK_MONOTONIC), processor = now(CLOCK_PROCESS_CPUTIME_ID);
    work();
    return {now(CLOCK_MONOTONIC) - wall, now(CLOCK_PROCESS_CPUTIME_ID) - processor};
}

solver::EvaluationPlan makePlan(bool strainLife) {
    solver::Definition definition;
    definition.type =
        strainLife ? solver::AnalysisType::StrainLifeSteps : solver::AnalysisType::StressLifeSteps;
    definition.stressOption = definition.strainOption = 4;
    definition.corrections = {!strainLife, strainLife};
    definition.outputs = {true, true, true};
    definition.infiniteLife = 1e30;
    definition.loadCycleCount = 1;
    definition.stressLifeMaterials = {{2.1e11, 600e6, 400e6, false, {1200e6, -0.1}, {}}};
    if (strainLife) {
        definition.stressLifeMaterials.clear();
        definition.strainLifeMaterials = {{2.1e11, 0.3, 0.15, 1200e6, 900e6, -0.09, 0.5, -0.6}};
    }
    std::vector<std::string> notes;
    return *solver::makePlan(definition, notes);
}

/// Random tensors about a load in proportion: each step a common factor and as much noise as is stated.
std::vector<Tensor> randomPath(Random& random, double noise) {
    const Tensor base{random.next(), random.next(), random.next(),
                      random.next(), random.next(), random.next()};
    std::vector<Tensor> path(kPlaneSteps);
    for (Tensor& tensor : path) {
        const double factor = random.next();
        for (std::size_t i = 0; i < tensor.size(); ++i)
            tensor[i] = (1 - noise) * factor * base[i] + noise * random.next();
    }
    return path;
}

void measurePlanes(const char* name, bool strainLife, double noise) {
    const auto plan = makePlan(strainLife);
    Random random;
    std::vector<solver::TensorColumns> nodes(kPlaneNodes);
    for (auto& node : nodes) {
        auto path = randomPath(random, noise);
        for (Tensor& tensor : path)
            for (double& component : tensor)
                component *= strainLife ? 2e-3 : 2e8;
        node.resize(path.size());
        node.put(0, path);
    }
    const std::uint32_t material = 0;
    solver::EvaluationScratch scratch;
    solver::PlaneSearch search;
    std::vector<solver::Governing> governing(1);
    const double whole = measure([&] {
                             for (const auto& node : nodes)
                                 search.search(plan, {node}, std::span(&material, 1), scratch, governing);
                         }).processor;
    const auto planes = static_cast<double>(search.planesSeen());
    // Every plane of the set, none left out: projected, counted, summed up.
    const auto normals = solver::PlaneSet::instance().normals();
    const double each = measure([&] {
                            for (const auto& node : nodes)
                                for (const auto& normal : normals)
                                    sumHistory(plan, plan.corrections, search.project({node}, normal),
                                               std::span(&material, 1), scratch, governing);
                        }).processor;
    const double eachPlanes = static_cast<double>(kPlaneNodes * normals.size());
    std::printf("%-46s %5.2f us of processor a plane and node (limit 1.5), %5.2f when no plane is left out; "
                "%4.0f planes a node\n",
                name, 1e6 * whole / planes, 1e6 * each / eachPlanes, planes / kPlaneNodes);
}

class Writer {
  public:
    explicit Writer(const std::filesystem::path& path)
        : out_(path, std::ios::binary) {}
    template <class... Values>
    void record(const Values&... values) {
        std::string payload;
        (append(payload, values), ...);
        append(buffer_, static_cast<int>(payload.size()));
        buffer_ += payload;
        append(buffer_, static_cast<int>(payload.size()));
        if (buffer_.size() > 1 << 20) flush();
    }
    bool finish() {
        flush();
        out_.close();
        return out_.good();
    }

  private:
    void flush() {
        out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
        buffer_.clear();
    }
    static void append(std::string& to, const std::string& text) { to += text; }
    template <class Number>
    static void append(std::string& to, Number number) {
        static_assert(std::endian::native == std::endian::little);
        to.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    std::ofstream out_;
    std::string buffer_;
};

bool writeFile(const std::filesystem::path& path, const std::string& stem, int nodes) {
    Writer out(path);
    std::string name = stem + '\0';
    name.resize(1024, ' ');
    out.record(name);
    out.record(1);
    out.record(1, nodes, 1, 2);
    for (const int value : {7, 1, 1, 0})
        out.record(value);
    out.record(0, 0);
    out.record(1, 0, 0, 0, 0, 0, 1, 1, 0);
    out.record(1e12);
    out.record(2.1e11, 600e6, 400e6);
    out.record(1);
    out.record(1200e6, -0.1);
    out.record(0, 0, 1, 0);
    out.record(kSteps);
    for (int step = 0; step < kSteps; ++step)
        out.record(static_cast<double>(step));
    Random random;
    for (int node = 1; node <= nodes; ++node) {
        out.record(node, kSteps, node, 1);
        out.record(1);
        for (int step = 0; step < kSteps; ++step)
            out.record(2e8 * random.next(), 2e8 * random.next(), 2e8 * random.next(), 1e8 * random.next(),
                       1e8 * random.next(), 1e8 * random.next());
    }
    return out.finish();
}

bool readAlone(const std::filesystem::path& path) {
    const auto source = solver::openFile(path);
    if (!source) return false;
    solver::InterfaceReader reader(**source);
    if (!reader.readDefinition()) return false;
    for (solver::NodeBatch batch;;) {
        if (!reader.readNodes(batch, 2000)) return false;
        if (batch.size() == 0) return true;
    }
}

/// Lets the system forget what it holds of a file, so that it comes from the disk again.
bool dropFromMemory(const std::filesystem::path& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return false;
    const bool good = ::fsync(file) == 0 && ::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED) == 0;
    ::close(file);
    return good;
}

bool measureRun(int nodes) {
    const auto folder = std::filesystem::temp_directory_path() / ("vexa_bench_" + std::to_string(::getpid()));
    std::filesystem::create_directory(folder);
    const auto file = folder / "FATIGUE.76";
    bool good = writeFile(file, (folder / "model").string(), nodes);
    const double megabytes = good ? static_cast<double>(std::filesystem::file_size(file)) / 1e6 : 0;
    std::printf("%d nodes x %d steps, %.0f MB, principal measure, %u processors\n", nodes, kSteps, megabytes,
                std::thread::hardware_concurrency());
    for (const bool fromDisk : {true, false}) {
        const auto prepare = [&] { return fromDisk ? dropFromMemory(file) : readAlone(file); };
        const auto best = [&](const std::function<void()>& work) {
            Elapsed least{1e9, 1e9};
            for (int i = 0; i < 3; ++i) {
                good = good && prepare();
                const Elapsed once = measure(work);
                least = {std::min(least.wall, once.wall), std::min(least.processor, once.processor)};
            }
            return least;
        };
        const Elapsed reading = best([&] { good = good && readAlone(file); });
        std::printf("  %s: reading alone %.2f s, processor %.2f s\n",
                    fromDisk ? "from the disk" : "from memory", reading.wall, reading.processor);
        for (const char* threads : {"1", "2"}) {
            std::ostringstream out, err;
            const std::vector<std::string> arguments{"--threads", threads, file.string()};
            const Elapsed whole = best([&] { good = good && solver::run(arguments, "", out, err) == 0; });
            std::printf(
                "    run with --threads %s: %5.2f s, %.2f of reading; processor %.2f s, %.2f of reading\n",
                threads, whole.wall, whole.wall / reading.wall, whole.processor,
                whole.processor / reading.processor);
        }
    }
    std::filesystem::remove_all(folder);
    return good;
}

} // namespace

int main(int argc, char** argv) {
    measurePlanes("critical plane, stress-life, load in proportion", false, 0.0);
    measurePlanes("critical plane, stress-life, some noise", false, 0.2);
    measurePlanes("critical plane, stress-life, nothing but noise", false, 1.0);
    measurePlanes("critical plane, strain-life Morrow, some noise", true, 0.2);
    const bool good = measureRun(argc > 1 ? std::atoi(argv[1]) : 1'000'000);
    if (!good) std::puts("the run failed");
    return good ? 0 : 1;
}
