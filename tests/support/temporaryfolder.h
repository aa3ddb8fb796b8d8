// A folder of its own for one test, removed with everything in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <unistd.h>

namespace mirelon::test {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "mirelon-XXXXXX").string();
        path = mkdtemp(pattern.data());
        // Other users may look in: some tests give root's rights up.
        std::filesystem::permissions(path, std::filesystem::perms(0755));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::permissions(path, std::filesystem::perms(0755), ignored);
        std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path operator/(std::string_view name) const { return path / name; }
    // With a slash at its end.
    std::string directory() const { return path.string() + '/'; }

    std::filesystem::path path;
};

inline std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void writeFile(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary).write(bytes.data(), std::ssize(bytes));
}

} // namespace mirelon::test
