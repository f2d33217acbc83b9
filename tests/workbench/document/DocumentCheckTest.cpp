#include "workbench/document/DocumentCheck.h"

#include "tests/workbench/document/DocumentTesting.h"

#include <sqlite3.h>

#include <fstream>

namespace workbench {

namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeBytes(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

/// Leaves pages in the file that nothing uses any more.
void freePages(const fs::path& path) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, "CREATE TABLE t(a); INSERT INTO t VALUES(zeroblob(50000)); DROP TABLE t",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(database);
}

std::size_t number(const std::string& bytes, std::size_t at, std::size_t size) {
    std::size_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

/// Damage that no opening notices: it concerns pages that the content does not use. Offsets are those of the
/// SQLite file format: 36 the count of free pages, 32 the first list of them, in which numbers begin at 8.
TEST(DocumentCheck, FindsDamageOutsideTheContent) {
    TemporaryFolder folder;
    ModelDatabase d;
    change(d, [&] { ASSERT_TRUE(bool(d.setMesh(hexRow(5)))); });
    const fs::path path = folder / "a.wkm";
    ASSERT_TRUE(bool(saveDocument(d, path)));
    freePages(path);
    const std::string good = bytesOf(path);
    const std::size_t list = (number(good, 32, 4) - 1) * number(good, 16, 2);
    struct Row {
        const char* what;
        std::size_t at; ///< of a big-endian number's last byte
        const char* problem;
    };
    const Row rows[] = {
        {"sound", good.size(), ""},
        {"count of free pages", 39, "reelist"},
        {"a free page is a used one", list + 11, "page"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        std::string bytes = good;
        if (row.at < bytes.size()) bytes[row.at] = 2;
        writeBytes(path, bytes);
        EXPECT_TRUE(bool(openDocument(path)));
        const DocumentCheck check = checkDocument(path);
        ASSERT_EQ(check.faults.size(), *row.problem ? 1u : 0u);
        if (check.faults.empty()) continue;
        EXPECT_NE(check.faults[0].problem.find(row.problem), std::string::npos) << check.faults[0].problem;
        EXPECT_EQ(check.faults[0].problem.find('\n'), std::string::npos);
    }
}

TEST(DocumentCheck, ReadsOnWhenOnlyTheMeshIsDamaged) {
    TemporaryFolder folder;
    ModelDatabase d;
    change(d, [&] {
        ASSERT_TRUE(bool(d.setMesh(hexRow(5))));
        tagTProp property;
        property.materialKeys = {77};
        d.Pool<DPoolProp>()->TR_Add(property);
    });
    const fs::path path = folder / "a.wkm";
    ASSERT_TRUE(bool(saveDocument(d, path)));
    std::string bytes = bytesOf(path);
    const double position = 0.1 * 3; // of hexRow
    const auto at = bytes.find(std::string_view(reinterpret_cast<const char*>(&position), sizeof position));
    ASSERT_NE(at, bytes.npos);
    bytes[at] ^= 1;
    writeBytes(path, bytes);
    const DocumentCheck check = checkDocument(path);
    ASSERT_EQ(check.faults.size(), 2u);
    EXPECT_NE(check.faults[0].problem.find("node_position"), std::string::npos) << check.faults[0].problem;
    EXPECT_NE(check.faults[1].problem.find("material key 77"), std::string::npos) << check.faults[1].problem;
    EXPECT_EQ(check.nodes, 24u);
    EXPECT_FALSE(check.meshIsWhole);
}

} // namespace

} // namespace workbench
