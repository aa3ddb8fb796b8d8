#include "tools/audio/virtualfile.h"

#include <algorithm>
#include <cstdio>

namespace mirelon::tools {

SF_VIRTUAL_IO VirtualFile::functions() {
    SF_VIRTUAL_IO table{};
    table.get_filelen = [](void* self) { return static_cast<VirtualFile*>(self)->length(); };
    table.seek = [](sf_count_t offset, int whence, void* self) {
        auto& file = *static_cast<VirtualFile*>(self);
        const sf_count_t base = whence == SEEK_CUR   ? file.position
                                : whence == SEEK_END ? file.length()
                                                     : 0;
        file.position = std::max<sf_count_t>(base + offset, 0);
        return file.position;
    };
    table.read = [](void* bytes, sf_count_t count, void* self) {
        auto& file = *static_cast<VirtualFile*>(self);
        const auto done = static_cast<sf_count_t>(file.readAt(
            file.position, {static_cast<std::byte*>(bytes), static_cast<std::size_t>(count)}));
        file.position += done;
        return done;
    };
    table.write = [](const void* bytes, sf_count_t count, void* self) {
        auto& file = *static_cast<VirtualFile*>(self);
        const auto done = static_cast<sf_count_t>(
            file.writeAt(file.position,
                         {static_cast<const std::byte*>(bytes), static_cast<std::size_t>(count)}));
        file.position += done;
        return done;
    };
    table.tell = [](void* self) { return static_cast<VirtualFile*>(self)->position; };
    return table;
}

SoundHandle VirtualFile::open(int mode, SF_INFO& info) {
    position = 0;
    SF_VIRTUAL_IO table = functions();
    return SoundHandle(sf_open_virtual(&table, mode, &info, this));
}

std::size_t MemoryFile::readAt(sf_count_t position, std::span<std::byte> bytes) {
    const auto begin = std::min(static_cast<std::size_t>(position), content.size());
    const std::size_t count = std::min(bytes.size(), content.size() - begin);
    std::copy_n(content.data() + begin, count, bytes.data());
    return count;
}

std::size_t MemoryFile::writeAt(sf_count_t position, std::span<const std::byte> bytes) {
    const auto begin = static_cast<std::size_t>(position);
    content.resize(std::max(content.size(), begin + bytes.size()));
    std::copy(bytes.begin(), bytes.end(), content.data() + begin);
    return bytes.size();
}

} // namespace mirelon::tools
