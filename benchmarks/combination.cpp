#include "benchmarks/Stopwatch.h"
#include "resultfile/ResultFile.h"
#include "workbench/results/ResultCombination.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace workbench;
namespace fs = std::filesystem;

constexpr int kValues = 1000000;
constexpr int kItems = 8;
constexpr unsigned kComponents[] = {312101, 312102, 312103, 312104, 312105, 312106};
constexpr int kRuns = 11;

template <class T>
T require(Result<T> done) {
    if (done) return std::move(*done);
    std::fprintf(stderr, "%s\n", done.error().message.c_str());
    std::exit(1);
}
void require(const Result<void>& done) {
    if (done) return;
    std::fprintf(stderr, "%s\n", done.error().message.c_str());
    std::exit(1);
}

std::vector<std::int32_t> nodeNumbers() {
    std::vector<std::int32_t> numbers(kValues);
    std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

/// One case an item, with all components.
void writeItems(const fs::path& path) {
    auto writer = require(resultfile::Writer::create(path, "Items", "bench_combination"));
    const auto numbers = nodeNumbers();
    require(writer.setMesh({numbers, {}, {}}));
    unsigned state = 1;
    std::vector<float> values(kValues);
    for (int item = 0; item < kItems; ++item) {
        require(writer.beginCase("Case " + std::to_string(item + 1)));
        require(writer.beginStep("1", 1));
        for (const unsigned id : kComponents) {
            for (float& value : values) {
                state = state * 1664525u + 1013904223u;
                value = static_cast<float>(static_cast<int>(state >> 8) - (1 << 23)) * 1e-4f;
            }
            require(writer.writeTable(id, resultfile::Location::Node, values));
        }
    }
    require(writer.commit());
}

/// Every byte of the tables read into one table's memory, and `tables` tables written from it.
void rawPass(const fs::path& source, const fs::path& target, int tables) {
    std::vector<float> table(kValues);
    const std::size_t bytes = table.size() * sizeof(float);
    const int in = ::open(source.c_str(), O_RDONLY);
    const int out = ::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    bool good = in >= 0 && out >= 0;
    for (std::size_t i = 0; good && i < kItems * std::size(kComponents); ++i)
        good = ::pread(in, table.data(), bytes, static_cast<off_t>(i * bytes)) == static_cast<ssize_t>(bytes);
    for (int i = 0; good && i < tables; ++i)
        good = ::write(out, table.data(), bytes) == static_cast<ssize_t>(bytes);
    ::close(in);
    if (::close(out) != 0 || !good) {
        std::perror("raw pass");
        std::exit(1);
    }
}

/// A step of a result file, without a document around it.
class StoredStep final : public ResultStep {
  public:
    StoredStep(ResultSource& source, std::size_t caseIndex)
        : source_(source)
        , caseIndex_(caseIndex) {}
    ItrKey GetKey() const override { return 0; }
    const std::wstring& GetName() const override { return name_; }
    CPOHBase* GetParent() const override { return nullptr; }
    CPOHCase* GetCase() const override { return nullptr; }
    double GetStepValue() const override { return 1; }
    CVResult* GetVResult(unsigned) override { return nullptr; }
    const std::vector<unsigned>& GetResultIds() const override { return ids_; }
    ResultSource& source() const override { return source_; }
    std::size_t caseIndex() const override { return caseIndex_; }
    std::size_t stepIndex() const override { return 0; }

  private:
    ResultSource& source_;
    std::size_t caseIndex_;
    std::wstring name_;
    std::vector<unsigned> ids_;
};

/// Everything but giving the file its name, which flushes it: without that it goes with the writer.
resultfile::Writer combine(const T_QM_MESH_D& mesh, CombinationKind kind, const CombinedStep& step,
                           const fs::path& target, int& tables) {
    auto writer = require(resultfile::Writer::create(target, "Combined", "bench_combination"));
    require(writer.setMesh({mesh.nodeNumbers, {}, {}}));
    require(writer.beginCase("Combined"));
    ResultCombination combination(mesh, kind, writer, "Combined");
    require(combination.write(step));
    tables = static_cast<int>(combination.components().size());
    return writer;
}

void measure(const char* name, const fs::path& folder, const T_QM_MESH_D& mesh, CombinationKind kind,
             const CombinedStep& step) {
    double own = 1e30, raw = 1e30;
    int tables = 0;
    for (int run = 0; run < kRuns; ++run) {
        std::optional<resultfile::Writer> writer;
        own = std::min(own,
                       secondsOf([&] { writer = combine(mesh, kind, step, folder / "own.lmop", tables); }));
        writer.reset();
        raw = std::min(raw, secondsOf([&] { rawPass(folder / "items.lmop", folder / "raw", tables); }));
        fs::remove(folder / "raw");
    }
    std::printf("  %-28s %2d tables written  %7.1f ms  %.2f x the raw pass of %.1f ms (limit 2)\n", name,
                tables, own * 1e3, own / raw, raw * 1e3);
}

} // namespace

int main() {
    std::string name = (fs::temp_directory_path() / "vexa-bench-combination-XXXXXX").string();
    if (!::mkdtemp(name.data())) return std::perror(name.c_str()), 1;
    const fs::path folder = name;
    writeItems(folder / "items.lmop");

    const auto numbers = nodeNumbers();
    T_QM_MESH_D mesh;
    mesh.nodeNumbers = numbers;
    ResultSource source(require(resultfile::Reader::open(folder / "items.lmop")));
    require(source.checkMesh(mesh));
    std::vector<StoredStep> steps;
    for (std::size_t i = 0; i < kItems; ++i)
        steps.emplace_back(source, i);
    CombinedStep combined{"1", 1, {}};
    for (std::size_t i = 0; i < kItems; ++i)
        combined.members.push_back({&steps[i], 1.35 - 0.2 * double(i), static_cast<std::uint32_t>(i + 1)});

    std::printf("combination of %d items x %zu components x %d values, without flush\n", kItems,
                std::size(kComponents), kValues);
    measure("linear, with von Mises", folder, mesh, CombinationKind::Linear, combined);
    measure("maximum", folder, mesh, CombinationKind::Maximum, combined);
    measure("absolute maximum with sign", folder, mesh, CombinationKind::SignedAbsoluteMaximum, combined);
    fs::remove_all(folder);
    return 0;
}
