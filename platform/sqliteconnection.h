// SQLite's C handles as objects. Nothing here throws or reports but by status
// codes; after a failed opening every call answers that failure.
#pragma once

#include <chrono>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <string_view>

namespace mirelon {

class SqliteConnection {
  public:
    enum class Mode { existing, createMissing };

    // `wait` bounds how long all operations together wait for other users.
    SqliteConnection(const std::string& path, Mode mode, std::chrono::milliseconds wait);

    int execute(const char* sql);
    sqlite3* handle() const { return database.get(); }
    int openStatus() const { return status; }

  private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    static int waitForOthers(void* connection, int attempt);

    std::chrono::steady_clock::time_point deadline;
    std::unique_ptr<sqlite3, Close> database;
    int status = SQLITE_OK;
};

// One prepared statement; parameters count from 1. What is bound must live as
// long as the statement.
class SqliteStatement {
  public:
    SqliteStatement(SqliteConnection& connection, const char* sql);

    void bindText(int parameter, std::string_view text);
    void bindBlob(int parameter, std::string_view bytes);
    // SQLITE_ROW, SQLITE_DONE, or why not.
    int step();
    int status() const { return lastStatus; }

    // The first column of the row stepped to.
    int integer() const { return sqlite3_column_int(statement.get(), 0); }
    std::string blob() const;

  private:
    struct Finalise {
        void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
    };

    std::unique_ptr<sqlite3_stmt, Finalise> statement;
    int lastStatus = SQLITE_OK;
};

} // namespace mirelon
