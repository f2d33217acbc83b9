#include "workbench/document/Sqlite.h"

#include "base/ReplaceFile.h"

namespace workbench {

namespace {

constexpr int kBusyMilliseconds = 2000;

Error reasonOf(sqlite3* handle) {
    const int code = handle ? sqlite3_errcode(handle) : SQLITE_NOMEM;
    const int system = handle ? sqlite3_system_errno(handle) : 0;
    const std::string systemText = system != 0 ? ": " + systemErrorText(system) : std::string();
    switch (code) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return Error{"it is in use by another program; close it there and try again"};
    case SQLITE_NOTADB:
        return Error{"it is not a model document"};
    case SQLITE_CORRUPT:
        return Error{"it is damaged; restore it from a copy"};
    case SQLITE_FULL:
        return Error{"the disk is full; make room and try again"};
    case SQLITE_READONLY:
        if (sqlite3_extended_errcode(handle) == SQLITE_READONLY_ROLLBACK)
            return Error{
                "a save of it was cut short, which cannot be taken back where it is write-protected; copy "
                "it with its -journal file to a folder that you may write to, and open it there"};
        return Error{"it is write-protected"};
    case SQLITE_CANTOPEN:
        return Error{"the file cannot be opened" + systemText};
    case SQLITE_IOERR:
        return Error{"reading or writing failed" + systemText};
    case SQLITE_NOMEM:
        return Error{"there is not enough memory"};
    default:
        return Error{std::string("the database reports: ") + sqlite3_errmsg(handle)};
    }
}

} // namespace

Result<SqliteConnection> SqliteConnection::open(const std::filesystem::path& path, int flags) {
    SqliteConnection connection;
    sqlite3* handle = nullptr;
    const int status = sqlite3_open_v2(path.string().c_str(), &handle, flags, nullptr);
    connection.handle_.reset(handle);
    if (status != SQLITE_OK) return connection.error();
    sqlite3_busy_timeout(handle, kBusyMilliseconds);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    if (auto set = connection.run("PRAGMA cell_size_check=ON"); !set) return set.error();
    return connection;
}

Result<void> SqliteConnection::run(const char* sql) const {
    if (sqlite3_exec(handle_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) return error();
    return {};
}

Result<void> SqliteConnection::close() {
    if (sqlite3_close(handle_.get()) != SQLITE_OK) return error();
    handle_.release();
    return {};
}

Error SqliteConnection::error() const {
    return reasonOf(handle_.get());
}

bool SqliteConnection::fileHasMoved() const {
    int moved = 0;
    return sqlite3_file_control(handle_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) != SQLITE_OK ||
           moved != 0;
}

SqliteStatement::SqliteStatement(const SqliteConnection& connection, const char* sql)
    : connection_(connection) {
    status_ = sqlite3_prepare_v2(connection.handle(), sql, -1, &handle_, nullptr);
}

void SqliteStatement::bind(int parameter, std::int64_t value) {
    if (status_ == SQLITE_OK) status_ = sqlite3_bind_int64(handle_, parameter, value);
}

void SqliteStatement::bind(int parameter, std::string_view value) {
    // An empty view may have no address, which would bind NULL.
    const char* data = value.empty() ? "" : value.data();
    if (status_ == SQLITE_OK)
        status_ = sqlite3_bind_text64(handle_, parameter, data, value.size(), SQLITE_STATIC, SQLITE_UTF8);
}

void SqliteStatement::bind(int parameter, std::span<const std::byte> value) {
    if (status_ == SQLITE_OK)
        status_ = sqlite3_bind_blob64(handle_, parameter, value.data(), value.size(), SQLITE_STATIC);
}

bool SqliteStatement::next() {
    if (status_ != SQLITE_OK && status_ != SQLITE_ROW) return false;
    status_ = sqlite3_step(handle_);
    return status_ == SQLITE_ROW;
}

Result<void> SqliteStatement::run() {
    while (next()) {
    }
    auto done = result();
    if (done) status_ = sqlite3_reset(handle_);
    return done;
}

Result<void> SqliteStatement::result() const {
    if (status_ == SQLITE_OK || status_ == SQLITE_ROW || status_ == SQLITE_DONE) return {};
    return connection_.error();
}

std::string SqliteStatement::text(int column) const {
    const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(handle_, column));
    const int size = sqlite3_column_bytes(handle_, column);
    return data ? std::string(data, static_cast<std::size_t>(size)) : std::string();
}

} // namespace workbench
