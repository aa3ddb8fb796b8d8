#include "platform/files.h"

#include <array>
#include <cstring>

XPlatFile XPlatFileOpen(const char* name, const char* dir, XPlatFile* file, bool write) {
    std::array<char, kXPlatPathSize> path{};
    const int length = std::snprintf(path.data(), path.size(), "%s%s", dir, name);
    // A path cut short would name another file.
    const bool fits = length >= 0 && static_cast<std::size_t>(length) < path.size();
    // 'e': a program that the host starts meanwhile does not inherit the file.
    *file = fits ? std::fopen(path.data(), write ? "wb+e" : "rb+e") : nullptr;
    return *file;
}

void XPlatFileRead(XPlatFile file, void* buffer, std::int32_t length) {
    if (file != nullptr && length > 0)
        (void)!std::fread(buffer, 1, static_cast<std::size_t>(length), file);
}

void XPlatFileWrite(XPlatFile file, const void* buffer, std::int32_t length) {
    if (file != nullptr && length > 0)
        (void)!std::fwrite(buffer, 1, static_cast<std::size_t>(length), file);
}

void XPlatFileClose(XPlatFile file) {
    if (file != nullptr)
        (void)std::fclose(file);
}

void XPlatGetFileNameAndDir(const char* path, char* name, char* dir) {
    const char* slash = std::strrchr(path, '/');
    if (slash == nullptr)
        return;
    const auto dirLength = static_cast<std::size_t>(slash + 1 - path);
    std::memcpy(name, slash + 1, std::strlen(slash + 1) + 1);
    std::memcpy(dir, path, dirLength);
    dir[dirLength] = '\0';
}

void setPrefValue(const char* /*key*/, float /*value*/) {}

float getPrefValue(const char* /*key*/, float defaultValue) {
    return defaultValue;
}
