// The preferences on disk: one SQLite file, opened for each operation and
// closed again, so that no handle outlives an operation or crosses a fork.
#pragma once

#include <chrono>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace mirelon {

struct PreferenceChange {
    std::string key;
    std::optional<std::string> value; // nothing: the key is removed
};

// Any number of objects, threads and processes may use one file at once. Each
// operation is one transaction: a writer killed half-way leaves the old values.
//
// A damaged file is moved aside while nobody has it open: SQLite takes a journal
// by its name, so a process that still had the moved file open would take the journal
// of the new one for its own, undo another's transaction and write what is never
// read again. Operations hold the folder's lock together, the replacing one alone.
class PreferenceStore {
  public:
    static constexpr std::string_view fileName = "preferences.sqlite3";

    // How long an operation waits for another process before it gives up.
    static constexpr std::chrono::milliseconds readWait{250};
    static constexpr std::chrono::milliseconds writeWait{2000};

    explicit PreferenceStore(std::string folder) noexcept
        : folder(std::move(folder)) {}

    // The value, or nothing when there is none that can be read. Does not enter
    // SQLite while there is no store file.
    std::optional<std::string> read(std::string_view key) const;
    // All of them or none; creates folder and file when there is a value to keep.
    bool write(std::span<const PreferenceChange> changes) const;

  private:
    std::string path() const;

    std::string folder;
};

} // namespace mirelon
