#include "workbench/document/DocumentRows.h"

#include <limits>

namespace workbench {

namespace {

/// The tables of a document, as they also stand in its schema: a file with other ones is none of ours.
struct Table {
    const char* name;
    const char* sql;
};
constexpr Table kTables[] = {
    {"element_type_counts",
     "CREATE TABLE element_type_counts (type INTEGER PRIMARY KEY, count INTEGER NOT NULL)"},
    {"mesh_blocks",
     "CREATE TABLE mesh_blocks (id INTEGER PRIMARY KEY, column_name TEXT NOT NULL, "
     "block INTEGER NOT NULL, items INTEGER NOT NULL, checksum TEXT NOT NULL, data BLOB NOT NULL)"},
    {"meta", "CREATE TABLE meta (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID"},
    {"records", "CREATE TABLE records (key INTEGER PRIMARY KEY, pool TEXT NOT NULL, name TEXT NOT NULL, "
                "data TEXT NOT NULL)"},
    {"result_files", "CREATE TABLE result_files (key INTEGER PRIMARY KEY, analysis_key INTEGER NOT NULL, "
                     "path TEXT NOT NULL, first_key INTEGER NOT NULL, key_count INTEGER NOT NULL)"},
};

Result<std::int64_t> pragmaValue(const SqliteConnection& connection, const char* sql) {
    SqliteStatement statement(connection, sql);
    if (statement.next()) return statement.integer(0);
    if (auto done = statement.result(); !done) return done.error();
    return Error{"it is damaged; restore it from a copy"};
}

Result<void> checkKind(const SqliteConnection& connection) {
    const auto id = pragmaValue(connection, "PRAGMA application_id");
    if (!id) return id.error();
    if (*id != kApplicationId) return Error{"it is a database, but not a model document"};
    const auto version = pragmaValue(connection, "PRAGMA user_version");
    if (!version) return version.error();
    if (*version > kSchemaVersion)
        return Error{"it was written by a newer version of this program (document version " +
                     std::to_string(*version) + ", this program reads " + std::to_string(kSchemaVersion) +
                     "); open it with that version"};
    if (*version < 1)
        return Error{"its document version " + std::to_string(*version) + " is unknown; it is damaged"};
    return {};
}

Result<void> checkTables(const SqliteConnection& connection) {
    SqliteStatement statement(connection, "SELECT name, sql FROM sqlite_schema ORDER BY name");
    std::size_t known = 0;
    while (statement.next()) {
        const std::string name = statement.text(0);
        if (known == std::size(kTables) || name != kTables[known].name ||
            statement.text(1) != kTables[known].sql)
            return Error{"its table \"" + name +
                         "\" is not as a model document has it; it is damaged or was changed "
                         "by another program"};
        ++known;
    }
    if (auto done = statement.result(); !done) return done;
    if (known != std::size(kTables))
        return Error{std::string("it lacks the table \"") + kTables[known].name + "\"; it is damaged"};
    return {};
}

/// Rows come in ascending order of their keys, or the file's trees are damaged.
Error outOfOrder(const char* table) {
    return Error{std::string("its table \"") + table + "\" is damaged; restore the file from a copy"};
}

Result<void> readMeta(const SqliteConnection& connection, DocumentRows& rows) {
    SqliteStatement statement(connection, "SELECT name, value FROM meta");
    while (statement.next())
        if (!rows.meta.emplace(statement.text(0), statement.text(1)).second) return outOfOrder("meta");
    if (auto node = rows.meta.extract("checksum")) rows.checksum = node.mapped();
    return statement.result();
}

Result<void> readRecords(const SqliteConnection& connection, DocumentRows& rows) {
    SqliteStatement statement(connection, "SELECT key, pool, name, data FROM records ORDER BY key");
    while (statement.next()) {
        const auto key = static_cast<ItrKey>(statement.integer(0));
        if (!rows.records.empty() && key <= rows.records.back().key) return outOfOrder("records");
        rows.records.push_back({key, statement.text(1), statement.text(2), statement.text(3)});
    }
    return statement.result();
}

Result<void> readResultFiles(const SqliteConnection& connection, DocumentRows& rows) {
    SqliteStatement statement(
        connection, "SELECT key, analysis_key, path, first_key, key_count FROM result_files ORDER BY key");
    while (statement.next()) {
        const auto key = static_cast<ItrKey>(statement.integer(0));
        if (!rows.resultFiles.empty() && key <= rows.resultFiles.back().key)
            return outOfOrder("result_files");
        const std::int64_t count = statement.integer(4);
        if (count < 0 || count > std::numeric_limits<std::uint32_t>::max())
            return Error{"result file " + statement.text(0) + " has a count that is out of range"};
        rows.resultFiles.push_back({key, static_cast<ItrKey>(statement.integer(1)), statement.text(2),
                                    static_cast<ItrKey>(statement.integer(3)),
                                    static_cast<std::uint32_t>(count)});
    }
    return statement.result();
}

Result<void> readTypeCounts(const SqliteConnection& connection, DocumentRows& rows) {
    SqliteStatement statement(connection, "SELECT type, count FROM element_type_counts ORDER BY type");
    while (statement.next()) {
        const std::int64_t type = statement.integer(0);
        if (!rows.elementTypeCounts.empty() && type <= rows.elementTypeCounts.back().first)
            return outOfOrder("element_type_counts");
        if (type < 0 || type > 255)
            return Error{"it counts elements of the unknown type " + statement.text(0)};
        rows.elementTypeCounts.push_back(
            {static_cast<int>(type), static_cast<std::uint64_t>(statement.integer(1))});
    }
    return statement.result();
}

Result<void> readBlocks(const SqliteConnection& connection, DocumentRows& rows) {
    SqliteStatement statement(connection, "SELECT column_name, block, items, checksum, length(data), "
                                          "typeof(data) = 'blob', id FROM mesh_blocks ORDER BY id");
    while (statement.next()) {
        if (statement.integer(6) != static_cast<std::int64_t>(rows.blocks.size() + 1))
            return outOfOrder("mesh_blocks");
        if (statement.integer(5) == 0)
            return Error{"a mesh block of column " + statement.text(0) + " is not binary"};
        rows.blocks.push_back({statement.text(0), statement.integer(1), statement.integer(2),
                               statement.text(3), statement.integer(4)});
    }
    return statement.result();
}

} // namespace

Result<void> createTables(const SqliteConnection& connection) {
    const std::string kind = "PRAGMA application_id=" + std::to_string(kApplicationId) +
                             "; PRAGMA user_version=" + std::to_string(kSchemaVersion);
    if (auto done = connection.run(kind.c_str()); !done) return done;
    for (const Table& table : kTables) {
        if (auto done = connection.run(table.sql); !done) return done;
    }
    return {};
}

Result<void> writeRecords(const SqliteConnection& connection, const std::vector<RecordRow>& records) {
    SqliteStatement insert(connection, "INSERT OR REPLACE INTO records VALUES (?, ?, ?, ?)");
    for (const RecordRow& row : records) {
        insert.bind(1, static_cast<std::int64_t>(row.key));
        insert.bind(2, row.pool);
        insert.bind(3, row.name);
        insert.bind(4, row.data);
        if (auto done = insert.run(); !done) return done;
    }
    return {};
}

Result<void> writeSmallTables(const SqliteConnection& connection, const DocumentRows& rows) {
    for (const char* sql :
         {"DELETE FROM meta", "DELETE FROM result_files", "DELETE FROM element_type_counts"}) {
        if (auto done = connection.run(sql); !done) return done;
    }
    SqliteStatement meta(connection, "INSERT INTO meta VALUES (?, ?)");
    const auto addMeta = [&meta](const std::string& name, const std::string& value) {
        meta.bind(1, name);
        meta.bind(2, value);
        return meta.run();
    };
    for (const auto& [name, value] : rows.meta)
        if (auto done = addMeta(name, value); !done) return done;
    if (auto done = addMeta("checksum", contentChecksum(rows)); !done) return done;
    SqliteStatement file(connection, "INSERT INTO result_files VALUES (?, ?, ?, ?, ?)");
    for (const ResultFileRecord& row : rows.resultFiles) {
        file.bind(1, static_cast<std::int64_t>(row.key));
        file.bind(2, static_cast<std::int64_t>(row.analysisKey));
        file.bind(3, row.path);
        file.bind(4, static_cast<std::int64_t>(row.firstKey));
        file.bind(5, static_cast<std::int64_t>(row.keyCount));
        if (auto done = file.run(); !done) return done;
    }
    SqliteStatement type(connection, "INSERT INTO element_type_counts VALUES (?, ?)");
    for (const auto& [code, count] : rows.elementTypeCounts) {
        type.bind(1, std::int64_t{code});
        type.bind(2, static_cast<std::int64_t>(count));
        if (auto done = type.run(); !done) return done;
    }
    return {};
}

Result<DocumentRows> readRows(const SqliteConnection& connection) {
    DocumentRows rows;
    if (auto done = checkKind(connection); !done) return done.error();
    if (auto done = checkTables(connection); !done) return done.error();
    if (auto done = readMeta(connection, rows); !done) return done.error();
    if (auto done = readRecords(connection, rows); !done) return done.error();
    if (auto done = readResultFiles(connection, rows); !done) return done.error();
    if (auto done = readTypeCounts(connection, rows); !done) return done.error();
    if (auto done = readBlocks(connection, rows); !done) return done.error();
    return rows;
}

} // namespace workbench
