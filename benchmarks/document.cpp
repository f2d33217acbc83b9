// Opening and saving a document of 1,000,000 nodes and hexahedra, each figure beside its limit in the same
// run.

#include "benchmarks/Stopwatch.h"
#include "host/ElementTypes.h"
#include "workbench/document/DocumentFile.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using namespace workbench;
namespace fs = std::filesystem;

/// A block of side^3 nodes; as many hexahedra, those beyond the block's own along its last cells once more.
MeshData cubeMesh(std::uint32_t side, std::uint32_t property) {
    MeshData mesh;
    for (std::uint32_t i = 0; i < side * side * side; ++i) {
        mesh.nodeNumbers.push_back(static_cast<std::int32_t>(i + 1));
        mesh.nodePositions.push_back({0.1 * (i % side), 0.1 * (i / side % side), 0.1 * (i / side / side)});
    }
    const std::uint32_t row = side, layer = side * side, last = side - 2;
    for (std::uint32_t i = 0; i < side * side * side; ++i) {
        const std::uint32_t x = std::min(i % side, last), y = std::min(i / side % side, last);
        const std::uint32_t n = x + y * row + std::min(i / side / side, last) * layer;
        mesh.elementNumbers.push_back(static_cast<std::int32_t>(i + 1));
        mesh.elementTypes.push_back(static_cast<std::uint8_t>(ElementType::Hex8));
        mesh.elementPropertyKeys.push_back(property);
        for (const std::uint32_t at : {n, n + 1, n + row + 1, n + row})
            for (const std::uint32_t up : {0u})
                mesh.elementNodes.push_back(at + up);
        for (const std::uint32_t at : {n, n + 1, n + row + 1, n + row})
            mesh.elementNodes.push_back(at + layer);
        mesh.elementNodeOffsets.push_back(static_cast<std::uint32_t>(mesh.elementNodes.size()));
    }
    return mesh;
}

void require(bool ok, const char* what) {
    if (ok) return;
    std::fprintf(stderr, "document benchmark: %s failed\n", what);
    std::exit(0);
}

/// Steps through the mesh blocks and looks at each of their bytes; the number of bytes.
std::size_t selectBlocks(const fs::path& path, std::uint64_t& sum) {
    sqlite3* database = nullptr;
    sqlite3_stmt* statement = nullptr;
    std::size_t bytes = 0;
    require(sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK,
            "plain open");
    require(sqlite3_prepare_v2(database, "SELECT data FROM mesh_blocks", -1, &statement, nullptr) ==
                SQLITE_OK,
            "plain SELECT");
    while (sqlite3_step(statement) == SQLITE_ROW) {
        const auto* data = static_cast<const char*>(sqlite3_column_blob(statement, 0));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, 0));
        for (std::size_t i = 0; i + 8 <= size; i += 8) {
            std::uint64_t word;
            std::memcpy(&word, data + i, 8);
            sum += word;
        }
        bytes += size;
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return bytes;
}

void writeRaw(const fs::path& path, std::size_t bytes) {
    static const std::vector<char> block(1 << 20, 'x');
    const int file = ::open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0644);
    require(file >= 0, "raw open");
    for (std::size_t left = bytes; left > 0;) {
        const auto count = ::write(file, block.data(), std::min(left, block.size()));
        require(count > 0, "raw write");
        left -= static_cast<std::size_t>(count);
    }
    require(::fsync(file) == 0, "raw flush");
    ::close(file);
}

/// `allowed` is the ratio that must not be exceeded; 0: reported only.
void print(const char* what, double seconds, const char* limitName, double limit, double allowed = 0) {
    std::printf("%-24s %8.1f ms   %s %.1f ms   ratio %.2f", what, seconds * 1e3, limitName, limit * 1e3,
                seconds / limit);
    if (allowed > 0) std::printf(" (limit %.2f)", allowed);
    std::printf("\n");
}

} // namespace

int main() {
    const fs::path folder = fs::temp_directory_path() / ("vexa-bench-document-" + std::to_string(::getpid()));
    fs::create_directories(folder);
    const fs::path path = folder / "cube.wkm";

    ModelDatabase database;
    require(database.beginTransaction(L"cube") != 0, "transaction");
    tagTProp property;
    property.name = L"steel part";
    const auto propertyKey = database.Pool<DPoolProp>()->TR_Add(property);
    tagTMset set;
    set.name = L"all";
    for (std::int32_t i = 1; i <= 1000000; ++i)
        set.elementNumbers.push_back(i);
    set.nodeNumbers = set.elementNumbers;
    database.Pool<DPoolMset>()->TR_Add(set);
    require(bool(database.setMesh(cubeMesh(100, static_cast<std::uint32_t>(propertyKey)))), "mesh");
    database.commitTransaction();

    constexpr int kRuns = 7;
    int copy = 0;
    const double save = fastest(3, [&] {
        require(bool(saveDocument(database, folder / (std::to_string(copy++) + ".wkm"))), "save");
    });
    require(bool(saveDocument(database, path)), "save");
    const auto size = fs::file_size(path);
    const double raw = fastest(3, [&] { writeRaw(folder / "raw", size); });
    print("save whole", save, "raw write and flush", raw);
    const double again = fastest(3, [&] {
        database.beginTransaction(L"rename");
        database.setUnits({"kN", "m"});
        database.commitTransaction();
        require(bool(saveDocument(database, path)), "save in place");
    });
    print("save records in place", again, "save whole", save);

    std::uint64_t sum = 0;
    std::size_t bytes = 0;
    double select = 1e9, open = 1e9;
    for (int i = 0; i < kRuns; ++i) {
        select = std::min(select, secondsOf([&] { bytes = selectBlocks(path, sum); }));
        std::unique_ptr<ModelDatabase> opened; // closing it is not a part of opening
        open = std::min(open, secondsOf([&] {
                            auto answer = openDocument(path);
                            require(bool(answer), "open");
                            opened = std::move(*answer);
                        }));
    }
    std::printf("%zu bytes of mesh in a file of %zu bytes (sum %llx)\n", bytes,
                static_cast<std::size_t>(size), static_cast<unsigned long long>(sum));
    print("open", open, "plain SELECT", select, 2);
    const double info = fastest(kRuns, [&] {
        DocumentSummary summary;
        require(bool(openDocumentRecords(path, summary)) && summary.nodeCount == 1000000, "info");
    });
    print("open without mesh", info, "allowed", 0.2, 1);
    fs::remove_all(folder);
}
