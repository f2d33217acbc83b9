#include "workbench/document/DocumentFile.h"

#include "base/ReplaceFile.h"
#include "workbench/document/DocumentRows.h"
#include "workbench/document/MeshBlocks.h"
#include "workbench/document/MeshCheck.h"

#include <algorithm>
#include <functional>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

namespace workbench {

namespace {

namespace fs = std::filesystem;

/// Absolute and without links, so that a document keeps its place however it is named.
fs::path resolved(const fs::path& path) {
    std::error_code error;
    fs::path answer = fs::weakly_canonical(fs::absolute(path, error), error);
    return error ? path : answer;
}

Result<void> checkReadable(const fs::path& path) {
    std::error_code error;
    const auto status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) return Error{"there is no such file"};
    if (error) return Error{systemErrorText(error.value())};
    if (fs::is_directory(status)) return Error{"it is a folder"};
    if (!fs::is_regular_file(status)) return Error{"it is not a file"};
    const auto size = fs::file_size(path, error);
    if (error) return Error{systemErrorText(error.value())};
    if (size == 0) return Error{"it is empty"};
    return {};
}

Result<void> checkContent(const DocumentRows& rows) {
    if (rows.checksum == contentChecksum(rows)) return {};
    return Error{"its records do not match their checksum; it is damaged or was changed by another program"};
}

Result<void> takeMesh(const SqliteConnection& connection, const DocumentRows& rows,
                      ModelDatabase::State& state) {
    auto mesh = readMeshBlocks(connection, rows);
    if (!mesh) return mesh.error();
    for (const auto* keys : {&mesh->nodeKeys, &mesh->elementKeys})
        if (!std::is_sorted(keys->begin(), keys->end(), std::less_equal<>()) ||
            (!keys->empty() && (keys->front() == 0 || keys->back() >= state.keys.next())))
            return Error{"its mesh has keys that the document never gave out; it is damaged"};
    const auto isProperty = [&state](ItrKey key) { return state.properties().Exist(key); };
    if (auto checked = checkMesh(*mesh, isProperty); !checked) return checked;
    state.placeMesh(std::move(*mesh), state.meshVersion);
    return {};
}

enum class Mesh { Read, LeftOut };

Result<void> read(const fs::path& path, ModelDatabase& database, DocumentSummary& summary, Mesh mesh) {
    if (auto checked = checkReadable(path); !checked) return checked;
    // Opened for writing where that is possible: only so a save that was cut short can be taken back.
    auto connection = SqliteConnection::open(path, SQLITE_OPEN_READWRITE);
    if (!connection) return connection.error();
    if (auto begun = connection->run("BEGIN"); !begun) return begun;
    const auto rows = readRows(*connection);
    if (!rows) return rows.error();
    auto& state = database.state();
    if (auto taken = takeRows(*rows, state); !taken) return taken;
    auto read = summaryOf(*rows);
    if (!read) return read.error();
    summary = std::move(*read);
    summary.units = state.units;
    if (mesh == Mesh::LeftOut) {
        state.meshIsLoaded = false;
    } else if (auto taken = takeMesh(*connection, *rows, state); !taken) {
        return taken;
    }
    if (auto checked = checkContent(*rows); !checked) return checked;
    state.origin = {path, rows->checksum, state.meshVersion};
    return {};
}

Result<std::unique_ptr<ModelDatabase>> open(const fs::path& path, DocumentSummary& summary, Mesh mesh) {
    auto database = std::make_unique<ModelDatabase>();
    Result<void> done;
    try {
        done = read(resolved(path), *database, summary, mesh);
    } catch (const std::bad_alloc&) {
        done = Error{"there is not enough memory for it"};
    }
    if (!done) return Error{"cannot open " + path.string() + ": " + done.error().message};
    return database;
}

/// Writes what differs between `before`, which stands in the file, and `after`.
Result<void> writeChanges(const SqliteConnection& connection, const DocumentRows& before,
                          const DocumentRows& after) {
    std::vector<RecordRow> changed;
    SqliteStatement remove(connection, "DELETE FROM records WHERE key = ?");
    auto old = before.records.begin();
    const auto dropOldBelow = [&](ItrKey key) -> Result<void> {
        for (; old != before.records.end() && old->key < key; ++old) {
            remove.bind(1, static_cast<std::int64_t>(old->key));
            if (auto done = remove.run(); !done) return done;
        }
        return {};
    };
    for (const RecordRow& row : after.records) {
        if (auto done = dropOldBelow(row.key); !done) return done;
        if (old != before.records.end() && old->key == row.key && *old++ == row) continue;
        changed.push_back(row);
    }
    if (auto done = dropOldBelow(KeySequence::kEnd); !done) return done;
    if (auto done = writeRecords(connection, changed); !done) return done;
    return writeSmallTables(connection, after);
}

/// The file that a document is about to replace or change, kept from other writers meanwhile.
class LockedTarget {
  public:
    /// Locks the database at `path`; a save of it that was cut short is taken back by this. Nothing when the
    /// file is no sound database, so that there is nothing to lock.
    static Result<std::optional<LockedTarget>> lock(const fs::path& path) {
        auto connection = SqliteConnection::open(path, SQLITE_OPEN_READWRITE);
        if (!connection) return connection.error();
        // Such a database takes a transaction for writing, and fails at its end.
        if (connection->isReadOnly()) return Error{"it is write-protected"};
        // EXTRA: the end of a transaction is on the disk when it is reported.
        for (const char* sql :
             {"PRAGMA journal_mode=DELETE", "PRAGMA synchronous=EXTRA", "BEGIN IMMEDIATE"}) {
            if (auto done = connection->run(sql); !done) {
                const int code = sqlite3_errcode(connection->handle());
                if (code == SQLITE_NOTADB || code == SQLITE_CORRUPT) return std::optional<LockedTarget>();
                return done.error();
            }
        }
        if (connection->fileHasMoved()) return Error{"another program is just replacing it; try again"};
        return std::optional(LockedTarget(std::move(*connection)));
    }
    const SqliteConnection& connection() const { return connection_; }

  private:
    explicit LockedTarget(SqliteConnection&& connection)
        : connection_(std::move(connection)) {}
    SqliteConnection connection_;
};

/// Fills the new file at `path`. Nobody sees it yet, so its journal needs no file (connections that distrust
/// their file do not go without one); the commit of the name flushes it.
Result<void> writeNewFile(const fs::path& path, const MeshData& mesh, DocumentRows& rows) {
    auto connection = SqliteConnection::open(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (!connection) return connection.error();
    for (const char* sql :
         {"PRAGMA locking_mode=EXCLUSIVE", "PRAGMA journal_mode=MEMORY", "PRAGMA synchronous=OFF", "BEGIN"})
        if (auto done = connection->run(sql); !done) return done;
    if (auto done = createTables(*connection); !done) return done;
    if (auto done = writeRecords(*connection, rows.records); !done) return done;
    if (auto done = writeMeshBlocks(*connection, mesh, rows); !done) return done;
    if (auto done = writeSmallTables(*connection, rows); !done) return done;
    if (auto done = connection->run("COMMIT"); !done) return done;
    return connection->close();
}

/// Replaces the file at `path`, which the caller has locked if it was a database.
Result<void> replaceWhole(const fs::path& path, const MeshData& mesh, DocumentRows& rows) {
    addMeshSummary(mesh, rows);
    ReplacedFile file(path);
    if (auto written = writeNewFile(file.temporaryPath(), mesh, rows); !written) return written;
    std::error_code error;
    const auto status = fs::status(path, error);
    if (fs::exists(status)) fs::permissions(file.temporaryPath(), status.permissions(), error);
    // What a killed program left beside an earlier file must not be applied to the new one.
    for (const char* leftover : {"-journal", "-wal", "-shm"}) {
        fs::path name = path;
        name += leftover;
        fs::remove(name, error);
        if (error) return Error{"cannot remove " + name.string() + ": " + systemErrorText(error.value())};
    }
    return file.commit();
}

/// The very file that a database was read from or last written to, locked, with what stands in it.
struct LockedOrigin {
    LockedTarget target;
    DocumentRows rows;
};

/// Fails when the file is not what the database knows any more.
Result<LockedOrigin> lockOrigin(const DocumentOrigin& origin) {
    auto target = LockedTarget::lock(origin.path);
    if (!target) return target.error();
    if (!*target) return Error{"it was damaged since it was opened; restore it from a copy"};
    auto rows = readRows((*target)->connection());
    if (!rows) return rows.error();
    if (auto checked = checkContent(*rows); !checked) return checked.error();
    if (rows->checksum != origin.checksum)
        return Error{"another program has changed it since it was opened; open it again"};
    return LockedOrigin{std::move(**target), std::move(*rows)};
}

/// Saves over that file. `whileLocked` is called before, when it is certain that the file is still the one
/// that the database knows, and may change the database.
Result<void> saveOverOrigin(ModelDatabase::State& state, DocumentRows& rows,
                            const std::function<void()>& whileLocked) {
    const auto origin = lockOrigin(state.origin);
    if (!origin) return origin.error();
    const SqliteConnection& connection = origin->target.connection();
    const DocumentRows& before = origin->rows;
    if (whileLocked) whileLocked();
    rows = rowsOf(state);
    const bool isOlder = before.meta.at("schema_version") != rows.meta.at("schema_version");
    if (isOlder || state.meshVersion != state.origin.meshVersion)
        return replaceWhole(state.origin.path, state.mesh, rows);
    for (const char* name : {"node_count", "element_count", "element_node_count", "bounds"})
        if (const auto found = before.meta.find(name); found != before.meta.end()) rows.meta.insert(*found);
    rows.elementTypeCounts = before.elementTypeCounts;
    rows.blocks = before.blocks;
    if (auto done = writeChanges(connection, before, rows); !done) return done;
    return connection.run("COMMIT");
}

/// Saves where something else, or nothing, stands.
Result<void> saveElsewhere(ModelDatabase::State& state, const fs::path& path, DocumentRows& rows) {
    rows = rowsOf(state);
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::exists(status)) return replaceWhole(path, state.mesh, rows);
    if (fs::is_directory(status)) return Error{"it is a folder"};
    if (!fs::is_regular_file(status)) return Error{"it is not a file"};
    const auto target = LockedTarget::lock(path);
    if (!target) return target.error();
    return replaceWhole(path, state.mesh, rows);
}

Result<void> save(ModelDatabase::State& state, const fs::path& path,
                  const std::function<void()>& whileLocked) {
    if (state.journal.isOpen()) return Error{"a transaction is open; commit it or roll it back first"};
    if (!state.meshIsLoaded)
        return Error{"the document was opened without its mesh; open it whole to save it"};
    DocumentRows rows;
    std::error_code error;
    const bool isOrigin = path == state.origin.path && fs::exists(path, error);
    if (whileLocked && !isOrigin) return Error{"it is not the file that the document was last saved to"};
    auto saved = isOrigin ? saveOverOrigin(state, rows, whileLocked) : saveElsewhere(state, path, rows);
    if (!saved) return saved;
    state.origin = {path, contentChecksum(rows), state.meshVersion};
    state.journal.markSaved();
    return {};
}

} // namespace

Result<void> checkSavable(const ModelDatabase& database) {
    const DocumentOrigin& origin = database.state().origin;
    const auto locked = lockOrigin(origin);
    if (!locked) return Error{"cannot save " + origin.path.string() + ": " + locked.error().message};
    return {};
}

Result<std::unique_ptr<ModelDatabase>> openDocument(const fs::path& path) {
    DocumentSummary summary;
    return openDocument(path, summary);
}

Result<std::unique_ptr<ModelDatabase>> openDocument(const fs::path& path, DocumentSummary& summary) {
    return open(path, summary, Mesh::Read);
}

Result<std::unique_ptr<ModelDatabase>> openDocumentRecords(const fs::path& path, DocumentSummary& summary) {
    return open(path, summary, Mesh::LeftOut);
}

Result<void> saveDocument(ModelDatabase& database, const fs::path& path) {
    return saveDocument(database, path, {});
}

Result<void> saveDocument(ModelDatabase& database, const fs::path& path,
                          const std::function<void()>& whileLocked) {
    auto saved = save(database.state(), resolved(path), whileLocked);
    if (!saved) return Error{"cannot save " + path.string() + ": " + saved.error().message};
    return {};
}

} // namespace workbench
