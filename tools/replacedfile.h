// A file that appears whole or not at all.
#pragma once

#include <filesystem>

namespace mirelon::tools {

// Writes go to a new file beside `target`, which takes target's place when it
// is complete. Until then it is removed when the object goes and when the
// program is ended by SIGINT, SIGTERM or SIGHUP. One object at a time.
class ReplacedFile {
  public:
    // Throws CommandError when the folder cannot be written to or target is
    // something other than a regular file.
    explicit ReplacedFile(const std::filesystem::path& target);
    ~ReplacedFile();
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;

    int descriptor() const noexcept { return file; }
    const std::filesystem::path& temporary() const noexcept { return unfinished; }

    // Appends. Throws CommandError when the disk takes no more.
    void write(const void* bytes, std::size_t count);

    // Puts the new file in target's place. Throws CommandError on failure.
    void commit();

  private:
    [[noreturn]] void fail(int reason) const;

    std::filesystem::path target; // links followed
    std::filesystem::path unfinished;
    int file = -1;
};

} // namespace mirelon::tools
