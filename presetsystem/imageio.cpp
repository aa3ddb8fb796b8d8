#include "presetsystem/imageio.h"

#include "platform/files.h"

namespace mirelon {

void readImage(const ChosenFile& file, std::span<std::byte> image) {
    XPlatFile handle = nullptr;
    XPlatFileOpen(file.name.data(), file.directory.data(), &handle, false);
    XPlatFileRead(handle, image.data(), static_cast<std::int32_t>(image.size()));
    XPlatFileClose(handle);
}

void writeImage(const ChosenFile& file, std::span<const std::byte> image) {
    XPlatFile handle = nullptr;
    XPlatFileOpen(file.name.data(), file.directory.data(), &handle, true);
    XPlatFileWrite(handle, image.data(), static_cast<std::int32_t>(image.size()));
    XPlatFileClose(handle);
}

} // namespace mirelon
