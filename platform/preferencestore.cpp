#include "platform/preferencestore.h"

#include "platform/folderlock.h"
#include "platform/sqliteconnection.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace mirelon {

namespace {

// How our file is told from any other database.
constexpr int applicationId = 0x4D724C6E; // "MrLn"
constexpr int formatVersion = 1;

std::string schema() {
    return "PRAGMA application_id = " + std::to_string(applicationId) +
           ";"
           "PRAGMA user_version = " +
           std::to_string(formatVersion) +
           ";"
           "CREATE TABLE preferences (key TEXT PRIMARY KEY NOT NULL, value BLOB NOT NULL)"
           " WITHOUT ROWID;";
}

enum class Outcome {
    done,
    failed,  // the store is busy, out of reach, or of a later version: leave it
    damaged, // it is no store of ours
};

Outcome outcomeOf(int status) {
    switch (status & 0xFF) { // the primary code
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return Outcome::done;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR: // a table that is not as we made it
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
        return Outcome::damaged;
    default:
        return Outcome::failed;
    }
}

enum class FileKind { missing, regular, other, unreachable };

FileKind kindOf(const std::string& path) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0)
        return errno == ENOENT || errno == ENOTDIR ? FileKind::missing : FileKind::unreachable;
    // Opening anything else, a pipe say, might block.
    return S_ISREG(info.st_mode) ? FileKind::regular : FileKind::other;
}

// Within a transaction: whether the database is a store of ours; an empty one
// becomes it when `create` is set.
Outcome identify(SqliteConnection& database, bool create) {
    int application = 0;
    int version = 0;
    int tables = 0;
    for (const auto& [question, answer] : {std::pair{"PRAGMA application_id", &application},
                                           {"PRAGMA user_version", &version},
                                           {"SELECT count(*) FROM sqlite_master", &tables}}) {
        SqliteStatement statement(database, question);
        if (statement.step() != SQLITE_ROW)
            return outcomeOf(statement.status());
        *answer = statement.integer();
    }
    if (application == 0 && version == 0 && tables == 0)
        return create ? outcomeOf(database.execute(schema().c_str())) : Outcome::failed;
    if (application != applicationId)
        return Outcome::damaged;
    return version == formatVersion ? Outcome::done : Outcome::failed;
}

Outcome apply(SqliteConnection& database, const PreferenceChange& change) {
    SqliteStatement statement(
        database, change.value ? "INSERT INTO preferences (key, value) VALUES (?1, ?2)"
                                 " ON CONFLICT (key) DO UPDATE SET value = excluded.value"
                               : "DELETE FROM preferences WHERE key = ?1");
    statement.bindText(1, change.key);
    if (change.value)
        statement.bindBlob(2, *change.value);
    return outcomeOf(statement.step());
}

Outcome writeOnce(const std::string& path, std::span<const PreferenceChange> changes) {
    if (kindOf(path) == FileKind::other)
        return Outcome::damaged;
    SqliteConnection database(path, SqliteConnection::Mode::createMissing,
                              PreferenceStore::writeWait);
    // The write lock is taken at once: a reader that turns writer half-way
    // could not wait for another.
    Outcome outcome = outcomeOf(database.execute("BEGIN IMMEDIATE"));
    if (outcome == Outcome::done)
        outcome = identify(database, true);
    for (const PreferenceChange& change : changes)
        if (outcome == Outcome::done)
            outcome = apply(database, change);
    if (outcome == Outcome::done)
        outcome = outcomeOf(database.execute("COMMIT"));
    return outcome; // closing undoes what is not committed
}

// Renames the file to the first free of the names FILE.damaged-1, -2 and so on.
bool moveAside(const std::string& path) {
    for (int number = 1; number < 1000; ++number) {
        const std::string aside = path + ".damaged-" + std::to_string(number);
        struct stat info {};
        if (lstat(aside.c_str(), &info) == 0)
            continue;
        // A journal left behind would be played into the new file.
        (void)std::rename((path + "-journal").c_str(), (aside + "-journal").c_str());
        return std::rename(path.c_str(), aside.c_str()) == 0;
    }
    return false;
}

struct Answer {
    Outcome outcome;
    std::optional<std::string> value;
};

Answer readOnce(const std::string& path, std::string_view key) {
    SqliteConnection database(path, SqliteConnection::Mode::existing, PreferenceStore::readWait);
    Outcome outcome = outcomeOf(database.execute("BEGIN"));
    if (outcome == Outcome::done)
        outcome = identify(database, false);
    if (outcome != Outcome::done)
        return {outcome, std::nullopt};
    SqliteStatement statement(database, "SELECT value FROM preferences WHERE key = ?1");
    statement.bindText(1, key);
    if (statement.step() != SQLITE_ROW)
        return {outcomeOf(statement.status()), std::nullopt};
    return {Outcome::done, statement.blob()};
}

// A copy of the store and its journal in a folder of its own, while it lives.
class PrivateCopy {
  public:
    explicit PrivateCopy(const std::string& path) {
        std::error_code failure;
        std::string pattern = std::filesystem::temp_directory_path(failure) / "mirelon-XXXXXX";
        if (failure || mkdtemp(pattern.data()) == nullptr)
            return;
        folder = pattern;
        for (const char* suffix : {"", "-journal"})
            std::filesystem::copy_file(path + suffix, copy() + suffix, failure);
        for (const char* suffix : {"", "-journal"})
            std::filesystem::permissions(copy() + suffix, std::filesystem::perms(0600), failure);
    }
    ~PrivateCopy() {
        std::error_code ignored;
        if (!folder.empty())
            std::filesystem::remove_all(folder, ignored);
    }
    PrivateCopy(const PrivateCopy&) = delete;
    PrivateCopy& operator=(const PrivateCopy&) = delete;

    std::string copy() const { return folder + "/copy"; }

  private:
    std::string folder;
};

// Whether a killed writer has left the store half-changed where nobody here may
// put it right.
bool cannotBeMended(const std::string& folder, const std::string& path) {
    return kindOf(path + "-journal") == FileKind::regular && access(folder.c_str(), W_OK) != 0;
}

// True when it is there, no matter which process made it.
bool makeFolder(const std::string& folder) {
    constexpr mode_t ownerOnly = 0700;
    return mkdir(folder.c_str(), ownerOnly) == 0 || errno == EEXIST;
}

bool createFolder(const std::string& folder) {
    if (makeFolder(folder))
        return true;
    // Only its parent, the configuration folder, may be missing as well.
    const std::string parent = folder.substr(0, folder.rfind('/'));
    return errno == ENOENT && !parent.empty() && makeFolder(parent) && makeFolder(folder);
}

} // namespace

std::string PreferenceStore::path() const {
    return (folder + '/').append(fileName);
}

std::optional<std::string> PreferenceStore::read(std::string_view key) const {
    if (folder.empty() || kindOf(path()) != FileKind::regular)
        return std::nullopt;
    const FolderLock inUse(folder, FolderLock::Kind::shared, readWait);
    if (inUse.refused())
        return std::nullopt;
    const Answer answer = readOnce(path(), key);
    if (answer.outcome == Outcome::done || !cannotBeMended(folder, path()))
        return answer.value;
    return readOnce(PrivateCopy(path()).copy(), key).value;
}

bool PreferenceStore::write(std::span<const PreferenceChange> changes) const {
    if (folder.empty())
        return false;
    const bool somethingToKeep = std::ranges::any_of(
        changes, [](const PreferenceChange& change) { return change.value.has_value(); });
    if (!somethingToKeep && kindOf(path()) == FileKind::missing)
        return true;
    if (somethingToKeep && !createFolder(folder))
        return false;
    {
        const FolderLock inUse(folder, FolderLock::Kind::shared, writeWait);
        if (inUse.refused())
            return false;
        const Outcome outcome = writeOnce(path(), changes);
        if (outcome != Outcome::damaged)
            return outcome == Outcome::done;
    }
    const FolderLock replacing(folder, FolderLock::Kind::exclusive, writeWait);
    if (!replacing.held())
        return false;
    // Another process may have found the same damage and begun a new store.
    const Outcome outcome = writeOnce(path(), changes);
    if (outcome != Outcome::damaged)
        return outcome == Outcome::done;
    return moveAside(path()) && writeOnce(path(), changes) == Outcome::done;
}

} // namespace mirelon
