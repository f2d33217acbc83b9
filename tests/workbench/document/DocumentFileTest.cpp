#include "tests/workbench/document/DocumentTesting.h"
#include "workbench/document/DocumentRows.h"
#include "workbench/document/RecordJson.h"
#include "workbench/document/Sqlite.h"

#include <sqlite3.h>

#include <fstream>

namespace workbench {

namespace {

namespace fs = std::filesystem;

std::string readBytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeBytes(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

int runSql(const fs::path& path, const char* sql) {
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    sqlite3_exec(database, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
    const int status = sqlite3_exec(database, sql, nullptr, nullptr, nullptr);
    sqlite3_close(database);
    return status;
}

void save(ModelDatabase& database, const fs::path& path) {
    const auto saved = saveDocument(database, path);
    ASSERT_TRUE(bool(saved)) << saved.error().message;
}

/// Opens both ways; the document has to be refused, by a sentence that names the file and holds `text`.
void expectRefused(const fs::path& path, const std::string& text) {
    const auto opened = openDocument(path);
    ASSERT_FALSE(bool(opened));
    EXPECT_NE(opened.error().message.find(path.string()), std::string::npos) << opened.error().message;
    EXPECT_NE(opened.error().message.find(text), std::string::npos) << opened.error().message;
}

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

TEST(DocumentFile, KeepsOddValuesOfEveryKind) {
    TemporaryFolder folder;
    const auto original = oddDocument();
    save(*original, folder / "한글 name.wkm");
    auto opened = openDocument(folder / "한글 name.wkm");
    ASSERT_TRUE(bool(opened)) << opened.error().message;
    EXPECT_EQ(difference(*original, **opened), "");
    EXPECT_FALSE((*opened)->isModified());
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"한글 name.wkm"});
}

TEST(DocumentFile, KeepsAMeshOfManyBlocks) {
    TemporaryFolder folder;
    ModelDatabase d;
    change(d, [&] { ASSERT_TRUE(bool(d.setMesh(hexRow(2 * 65536, 0, 5)))); });
    save(d, folder / "a.wkm");
    auto opened = openDocument(folder / "a.wkm");
    ASSERT_TRUE(bool(opened)) << opened.error().message;
    EXPECT_EQ(difference(d, **opened), "");
}

TEST(DocumentFile, KeepsAnEmptyDocument) {
    TemporaryFolder folder;
    ModelDatabase d;
    save(d, folder / "a.wkm");
    auto opened = openDocument(folder / "a.wkm");
    ASSERT_TRUE(bool(opened)) << opened.error().message;
    EXPECT_EQ(difference(d, **opened), "");
}

TEST(DocumentFile, SummaryNeedsNoMesh) {
    TemporaryFolder folder;
    ModelDatabase d;
    change(d, [&] {
        MeshData mesh = hexRow(3);
        mesh.elementTypes[1] = static_cast<std::uint8_t>(ElementType::Quad8);
        ASSERT_TRUE(bool(d.setMesh(std::move(mesh))));
        d.setUnits({"kN", "m"});
        d.Pool<DPoolMatl>()->TR_Add({0, 1, L"steel", 1, 1, 1});
    });
    save(d, folder / "a.wkm");
    DocumentSummary summary;
    auto opened = openDocumentRecords(folder / "a.wkm", summary);
    ASSERT_TRUE(bool(opened)) << opened.error().message;
    EXPECT_EQ(summary.nodeCount, 16u);
    EXPECT_EQ(summary.elementCount, 3u);
    EXPECT_EQ(summary.bounds, (std::array<double, 6>{0, 0, 0, 0.1 * 3, 1, 1}));
    EXPECT_EQ(summary.elementTypeCounts, (std::vector<std::pair<int, std::uint64_t>>{{7, 1}, {11, 2}}));
    EXPECT_EQ(summary.units.length, "m");
    EXPECT_EQ((*opened)->Pool<DPoolMatl>()->GetCount(), 1u);
    EXPECT_EQ((*opened)->mesh().nodeCount(), 0u);
    EXPECT_FALSE(bool(saveDocument(**opened, folder / "b.wkm")));
    (*opened)->beginTransaction(L"mesh");
    EXPECT_FALSE(bool((*opened)->setMesh({})));
}

struct Damage {
    const char* sql;
    const char* message;
};

TEST(DocumentFile, RefusesWhatIsNotAsItWasWritten) {
    const Damage rows[] = {
        {"PRAGMA application_id=7", "not a model document"},
        {"PRAGMA user_version=3", "newer version"},
        {"PRAGMA user_version=0", "unknown"},
        {"DROP TABLE records", "\"result_files\""},
        {"DROP TABLE result_files", "lacks the table"},
        {"CREATE TABLE zoo(a)", "\"zoo\""},
        {"DROP TABLE meta; CREATE VIEW meta AS SELECT 'next_key' AS name, '7' AS value", "\"meta\""},
        {"CREATE TRIGGER t AFTER INSERT ON meta BEGIN DELETE FROM meta; END", "\"t\""},
        {"DELETE FROM meta WHERE name='next_key'", "lacks \"next_key\""},
        {"UPDATE meta SET value='4294967296' WHERE name='next_key'", "key sequence"},
        {"UPDATE meta SET value='3' WHERE name='next_key'", "never gave out"},
        {"UPDATE meta SET value='-1' WHERE name='node_count'", "not a count"},
        {"UPDATE meta SET value='9007199254740992' WHERE name='node_count'", "column node_key"},
        {"UPDATE meta SET value='17' WHERE name='node_count'", "column node_key"},
        {"UPDATE meta SET value='2' WHERE name='element_count'", "column element_key"},
        {"UPDATE meta SET value='[1,2,3]' WHERE name='bounds'", "six numbers"},
        {"UPDATE meta SET value='kip' WHERE name='force_unit'", "checksum"},
        {"DELETE FROM meta WHERE name='checksum'", "checksum"},
        {"UPDATE records SET data='{' WHERE pool='material'", "not valid JSON"},
        {"UPDATE records SET data=replace(data, '\"density\"', '\"mass\"')", "\"density\""},
        {"UPDATE records SET data='[]' WHERE pool='analysis'", "fields of its kind"},
        {"UPDATE records SET data='{\"value\":2147483648,\"stress_ratio\":0}' WHERE pool='output_control'", "\"value\""},
        {"UPDATE records SET data='{\"value\":1.5,\"stress_ratio\":0}' WHERE pool='output_control'", "\"value\""},
        {"UPDATE records SET data='{\"value\":-1,\"stress_ratio\":0,\"more\":1}' WHERE pool='output_control'",
         "fields of its kind"},
        {"UPDATE records SET data=replace(data, '7.85e-09', '1e400')", "not valid JSON"},
        {"UPDATE records SET data=CAST(x'7B2276616C7565223A22FF227D' AS TEXT) WHERE pool='output_control'",
         "not valid JSON"},
        {"UPDATE records SET data=replace(data, '[1,4]', '[4,1]')", "\"elements\""},
        {"UPDATE records SET data='{\"elements\":[[-2147483648,2147483647]],\"nodes\":[]}' WHERE name='runs'",
         "\"elements\""},
        {"UPDATE records SET data=replace(data, '7.85e-09', '7.95e-09')", "checksum"},
        {"UPDATE records SET name=CAST(x'FF' AS TEXT) WHERE name='empty'", "checksum"},
        {"UPDATE records SET pool='zoo' WHERE pool='material'", "no pool"},
        {"UPDATE records SET key=-key", "never gave out"},
        {"UPDATE records SET key=2147483647 WHERE name='empty'", "never gave out"},
        {"DELETE FROM records WHERE name='empty'", "checksum"},
        {"DELETE FROM records WHERE pool='analysis'", "refers to analysis key"},
        {"DELETE FROM records WHERE pool='property'", "refers to property key"},
        {"UPDATE result_files SET first_key=first_key+1", "never gave out"},
        {"UPDATE result_files SET key_count=4294967296", "out of range"},
        {"UPDATE result_files SET key_count=4294967295", "never gave out"},
        {"UPDATE result_files SET path='elsewhere'", "checksum"},
        {"INSERT INTO element_type_counts VALUES(300, 1)", "unknown type 300"},
        {"UPDATE element_type_counts SET count=4", "checksum"},
        {"DELETE FROM mesh_blocks WHERE id=3", "\"mesh_blocks\""},
        {"DELETE FROM mesh_blocks WHERE id=9", "lacks block 0 of the mesh column element_node;"},
        {"INSERT INTO mesh_blocks VALUES(10,'x',0,1,'',x'00')", "more mesh blocks"},
        {"UPDATE mesh_blocks SET items=15 WHERE id=1", "column node_key"},
        {"UPDATE mesh_blocks SET data=substr(data,2) WHERE id=3", "column node_position"},
        {"UPDATE mesh_blocks SET data='text' WHERE id=3", "not binary"},
        {"UPDATE mesh_blocks SET data=zeroblob(length(data)) WHERE id=9",
         "block 0 of the mesh column element_node does not match"},
        {"UPDATE mesh_blocks SET checksum='0000000000000000' WHERE id=6",
         "column element_type does not match"},
        {"UPDATE mesh_blocks SET column_name='node_key' WHERE id=2", "column node_number belongs"},
    };
    TemporaryFolder folder;
    save(*oddDocument(), folder / "good.wkm");
    for (const Damage& row : rows) {
        SCOPED_TRACE(row.sql);
        const fs::path path = folder / "bad.wkm";
        fs::copy_file(folder / "good.wkm", path, fs::copy_options::overwrite_existing);
        ASSERT_EQ(runSql(path, row.sql), SQLITE_OK);
        expectRefused(path, row.message);
    }
}

/// The document at `path` as the first version of the schema has it.
void makeFirstVersion(const fs::path& path) {
    auto connection = SqliteConnection::open(path, SQLITE_OPEN_READWRITE);
    ASSERT_TRUE(bool(connection));
    auto rows = readRows(*connection);
    ASSERT_TRUE(bool(rows)) << rows.error().message;
    rows->meta["schema_version"] = "1";
    for (RecordRow& row : rows->records) {
        Json data = Json::parse(row.data);
        for (const char* field : {"not_applicable", "excluded", "strength_defined", "cohesion",
                                  "friction_angle", "tensile_cutoff", "tensile_strength", "stress_ratio"})
            data.erase(field);
        row.data = data.dump();
    }
    ASSERT_TRUE(bool(connection->run("BEGIN")));
    ASSERT_TRUE(bool(writeRecords(*connection, rows->records)));
    ASSERT_TRUE(bool(writeSmallTables(*connection, *rows)));
    ASSERT_TRUE(bool(connection->run("COMMIT; PRAGMA user_version=1")));
}

TEST(DocumentFile, OpensTheFirstVersionAndSavesTheCurrentOne) {
    TemporaryFolder folder;
    const fs::path path = folder / "old.wkm";
    save(*oddDocument(), path);
    makeFirstVersion(path);
    auto opened = openDocument(path);
    ASSERT_TRUE(bool(opened)) << opened.error().message;
    const ItrKey steel = (*opened)->Pool<DPoolMatl>()->GetKeyList().front();
    EXPECT_EQ((*opened)->Pool<DPoolMatl>()->GetAtNU(steel).density, 7.85e-9);
    EXPECT_EQ((*opened)->Pool<DPoolMatl>()->GetAtNU(steel).cohesion, 0);
    (*opened)->beginTransaction(L"strength");
    tagTMatl soil = (*opened)->Pool<DPoolMatl>()->GetAtNU(steel);
    soil.cohesion = 25;
    (*opened)->Pool<DPoolMatl>()->TR_Modify(soil);
    (*opened)->commitTransaction();
    save(**opened, path);
    const auto again = openDocument(path);
    ASSERT_TRUE(bool(again)) << again.error().message;
    EXPECT_EQ((*again)->Pool<DPoolMatl>()->GetAtNU(steel).cohesion, 25);
    EXPECT_EQ(difference(**opened, **again), "");
    ASSERT_EQ(runSql(path, "SELECT 1"), SQLITE_OK);
}

TEST(DocumentFile, RefusesWhatIsNoDocument) {
    TemporaryFolder folder;
    fs::create_directory(folder / "folder.wkm");
    writeBytes(folder / "empty.wkm", "");
    writeBytes(folder / "text.wkm", std::string(5000, 'x'));
    writeBytes(folder / "short.wkm", "SQLite format 3");
    ASSERT_EQ(runSql(folder / "other.wkm", "CREATE TABLE t(a)"), SQLITE_OK);
    expectRefused(folder / "missing.wkm", "no such file");
    expectRefused(folder / "folder.wkm", "folder");
    expectRefused(folder / "empty.wkm", "empty");
    expectRefused(folder / "text.wkm", "not a model document");
    expectRefused(folder / "short.wkm", "not a model document");
    expectRefused(folder / "other.wkm", "not a model document");
    expectRefused("/dev/null", "not a file");
}

/// The bytes at `path` are refused with a sentence or hold the very same document.
void expectRefusedOrSame(const fs::path& path, ModelDatabase& original) {
    auto opened = openDocument(path);
    EXPECT_EQ(opened ? difference(original, **opened) : "", "");
    DocumentSummary summary;
    const auto records = openDocumentRecords(path, summary);
    EXPECT_TRUE(records || !opened) << "only the mesh could be read";
}

TEST(DocumentFile, NoCutIsTakenForADocument) {
    TemporaryFolder folder;
    const auto original = oddDocument();
    save(*original, folder / "good.wkm");
    const std::string bytes = readBytes(folder / "good.wkm");
    for (std::size_t length = 0; length < bytes.size(); length += length < 200 ? 7 : 509) {
        writeBytes(folder / "cut.wkm", std::string_view(bytes).substr(0, length));
        EXPECT_FALSE(bool(openDocument(folder / "cut.wkm"))) << length;
    }
}

TEST(DocumentFile, NoFlippedByteChangesADocumentSilently) {
    constexpr std::uint64_t kSeed = 20240607;
    Generator random(kSeed);
    TemporaryFolder folder;
    const auto original = oddDocument();
    save(*original, folder / "good.wkm");
    const std::string bytes = readBytes(folder / "good.wkm");
    for (int i = 0; i < 500 && !testing::Test::HasFailure(); ++i) {
        std::string damaged = bytes;
        // Half of them in the header and the schema, where a byte has the most to say.
        const auto at = static_cast<std::size_t>(random.below(i % 2 ? damaged.size() : 4096));
        damaged[at] = static_cast<char>(damaged[at] ^ (1 + random.below(255)));
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", byte " + std::to_string(at));
        writeBytes(folder / "flipped.wkm", damaged);
        expectRefusedOrSame(folder / "flipped.wkm", *original);
    }
}

TEST(DocumentFile, SaysThatAnotherProgramHasIt) {
    TemporaryFolder folder;
    const auto original = oddDocument();
    save(*original, folder / "a.wkm");
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open((folder / "a.wkm").c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    expectRefused(folder / "a.wkm", "in use by another program");
    const auto saved = saveDocument(*original, folder / "a.wkm");
    sqlite3_close(other);
    ASSERT_FALSE(bool(saved));
    EXPECT_NE(saved.error().message.find("in use by another program"), std::string::npos)
        << saved.error().message;
    save(*original, folder / "a.wkm");
}

} // namespace

} // namespace workbench
