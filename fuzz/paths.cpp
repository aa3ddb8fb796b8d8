// Splitting a path: any text.
#include "fuzz/input.h"
#include "platform/files.h"

using mirelon::fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mirelon::fuzz::Input input(data, size);
    const std::string path = input.text(size);
    // As large as the longest part can be, and not a byte more.
    std::vector<char> name(path.size() + 1, '#');
    std::vector<char> dir(path.size() + 1, '#');
    XPlatGetFileNameAndDir(path.c_str(), name.data(), dir.data());
    if (path.find('/') == std::string::npos) {
        expect(name.front() == '#' && dir.front() == '#');
        return 0;
    }
    expect(std::string(dir.data()) + name.data() == path);
    expect(std::string(dir.data()).back() == '/');
    expect(std::string(name.data()).find('/') == std::string::npos);
    return 0;
}
