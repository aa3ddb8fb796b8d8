#include "presetsystem/imageio.h"

#include "platform/files.h"

#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace mirelon {

namespace {

// Whether all that was written is in the file. True of what is no plain file: a
// pipe or a device keeps nothing.
bool holdsAll(XPlatFile file, std::size_t size) {
    struct stat info {};
    std::fflush(file); // what fails here is missing
    return fstat(fileno(file), &info) != 0 || !S_ISREG(info.st_mode) ||
           static_cast<std::size_t>(info.st_size) == size;
}

} // namespace

void readImage(const ChosenFile& file, std::span<std::byte> image) {
    XPlatFile handle = nullptr;
    XPlatFileOpen(file.name.data(), file.directory.data(), &handle, false);
    XPlatFileRead(handle, image.data(), static_cast<std::int32_t>(image.size()));
    XPlatFileClose(handle);
}

void writeImage(const ChosenFile& file, std::span<const std::byte> image) {
    XPlatFile handle = nullptr;
    XPlatFileOpen(file.name.data(), file.directory.data(), &handle, true);
    if (handle == nullptr)
        return;
    XPlatFileWrite(handle, image.data(), static_cast<std::int32_t>(image.size()));
    const bool whole = holdsAll(handle, image.size());
    XPlatFileClose(handle);
    if (!whole)
        unlink((std::string(file.directory.data()) + file.name.data()).c_str());
}

} // namespace mirelon
