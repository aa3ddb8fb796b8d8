#include "presetsystem/imageio.h"

#include "platform/files.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace mirelon {

namespace {

// The error of the last call, which may have left no word of it.
int lastError(int otherwise) {
    return errno != 0 ? errno : otherwise;
}

bool isPlain(XPlatFile file, struct stat& info) {
    return fstat(fileno(file), &info) == 0 && S_ISREG(info.st_mode);
}

} // namespace

int readImage(const ChosenFile& file, std::span<std::byte> image) {
    errno = 0;
    XPlatFile handle = nullptr;
    XPlatFileOpen(file.name.data(), file.directory.data(), &handle, false);
    if (handle == nullptr)
        return lastError(ENAMETOOLONG);
    XPlatFileRead(handle, image.data(), static_cast<std::int32_t>(image.size()));
    const int error = std::ferror(handle) != 0 ? lastError(EIO) : 0;
    XPlatFileClose(handle);
    return error;
}

int writeImage(const ChosenFile& file, std::span<const std::byte> image) {
    errno = 0;
    XPlatFile handle = nullptr;
    XPlatFileOpen(file.name.data(), file.directory.data(), &handle, true);
    if (handle == nullptr)
        return lastError(ENAMETOOLONG);
    XPlatFileWrite(handle, image.data(), static_cast<std::int32_t>(image.size()));
    errno = 0;
    int error = std::fflush(handle) != 0 ? lastError(EIO) : 0;
    struct stat info {};
    // A pipe or a device keeps nothing, so that nothing of it can be missing.
    const bool cut =
        isPlain(handle, info) && static_cast<std::size_t>(info.st_size) != image.size();
    XPlatFileClose(handle);
    if (cut) {
        error = error != 0 ? error : ENOSPC;
        unlink((std::string(file.directory.data()) + file.name.data()).c_str());
    }
    return error;
}

} // namespace mirelon
