#include "platform/sqliteconnection.h"

#include <thread>

namespace mirelon {

SqliteConnection::SqliteConnection(const std::string& path, Mode mode,
                                   std::chrono::milliseconds wait)
    : deadline(std::chrono::steady_clock::now() + wait) {
    // Reading asks for write access too (and goes without where it cannot be
    // had): the first reader after a killed writer undoes what that one began.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_PRIVATECACHE |
                      (mode == Mode::createMissing ? SQLITE_OPEN_CREATE : 0);
    sqlite3* opened = nullptr;
    status = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
    database.reset(opened); // a failed opening has a handle too
    if (status != SQLITE_OK)
        return;
    sqlite3_extended_result_codes(opened, 1);
    sqlite3_busy_handler(opened, &waitForOthers, this);
    // The file may come from anywhere: no huge values, and no code in a schema.
    constexpr int longestValue = 1 << 20;
    sqlite3_limit(opened, SQLITE_LIMIT_LENGTH, longestValue);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

int SqliteConnection::waitForOthers(void* connection, int /*attempt*/) {
    if (std::chrono::steady_clock::now() >= static_cast<SqliteConnection*>(connection)->deadline)
        return 0;
    // SQLite's own waits grow to a tenth of a second and starve the unlucky.
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return 1;
}

int SqliteConnection::execute(const char* sql) {
    if (status != SQLITE_OK)
        return status;
    return sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr);
}

SqliteStatement::SqliteStatement(SqliteConnection& connection, const char* sql) {
    lastStatus = connection.openStatus();
    if (lastStatus != SQLITE_OK)
        return;
    sqlite3_stmt* prepared = nullptr;
    lastStatus = sqlite3_prepare_v2(connection.handle(), sql, -1, &prepared, nullptr);
    statement.reset(prepared);
}

void SqliteStatement::bindText(int parameter, std::string_view text) {
    if (lastStatus == SQLITE_OK)
        lastStatus = sqlite3_bind_text64(statement.get(), parameter, text.data(), text.size(),
                                         SQLITE_STATIC, SQLITE_UTF8);
}

void SqliteStatement::bindBlob(int parameter, std::string_view bytes) {
    if (lastStatus != SQLITE_OK)
        return;
    // A blob without bytes is not the absence of one.
    lastStatus = bytes.empty() ? sqlite3_bind_zeroblob(statement.get(), parameter, 0)
                               : sqlite3_bind_blob64(statement.get(), parameter, bytes.data(),
                                                     bytes.size(), SQLITE_STATIC);
}

int SqliteStatement::step() {
    if (lastStatus == SQLITE_OK)
        lastStatus = sqlite3_step(statement.get());
    return lastStatus;
}

std::string SqliteStatement::blob() const {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement.get(), 0));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), 0));
    return bytes != nullptr ? std::string(bytes, size) : std::string();
}

} // namespace mirelon
