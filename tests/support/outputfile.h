// A file that another program writes to.
#pragma once

#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace mirelon::test {

// Empty at first. Open while the object lives, as a program that is started
// meanwhile takes it.
class OutputFile {
  public:
    explicit OutputFile(const std::filesystem::path& file)
        : descriptor(
              open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0644)) {}
    ~OutputFile() { close(descriptor); }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    const int descriptor; // negative where there is no such file
};

} // namespace mirelon::test
