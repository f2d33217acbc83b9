#pragma once

#include "base/Result.h"

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace workbench {

/// A connection to a database file. Failures are reasons without the file's name: whoever knows the task adds
/// it.
class SqliteConnection {
  public:
    /// `flags` as of sqlite3_open_v2. Sets the connection up for files that may be hostile.
    static Result<SqliteConnection> open(const std::filesystem::path& path, int flags);

    Result<void> run(const char* sql) const;
    Result<void> close();
    /// The reason of the last failure.
    Error error() const;
    /// True when the file has another name, or none, since it was opened.
    bool fileHasMoved() const;
    /// True when the file may not be written to, also where writing was asked for.
    bool isReadOnly() const { return sqlite3_db_readonly(handle_.get(), "main") == 1; }
    sqlite3* handle() const { return handle_.get(); }

  private:
    struct Closer {
        void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    };
    std::unique_ptr<sqlite3, Closer> handle_;
};

/// One statement: bind, then next() for each row, then result().
class SqliteStatement {
  public:
    SqliteStatement(const SqliteConnection& connection, const char* sql);
    ~SqliteStatement() { sqlite3_finalize(handle_); }
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    void bind(int parameter, std::int64_t value);
    void bind(int parameter, std::string_view value);           ///< the text outlives the statement's run
    void bind(int parameter, std::span<const std::byte> value); ///< likewise
    /// False at the end, and on a failure, which result() tells.
    bool next();
    /// Runs a statement without rows and makes it ready for the next values.
    Result<void> run();
    Result<void> result() const;

    std::int64_t integer(int column) const { return sqlite3_column_int64(handle_, column); }
    std::string text(int column) const;

  private:
    const SqliteConnection& connection_;
    sqlite3_stmt* handle_ = nullptr;
    int status_ = SQLITE_OK;
};

} // namespace workbench
