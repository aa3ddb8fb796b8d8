// Where the preset names lie in the chunk that a host keeps.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace mirelon::test::chunklayout {

constexpr std::size_t headerSize = 32;
constexpr std::size_t recordSize = 60;
constexpr std::size_t nameSize = 24;
constexpr std::size_t presetCount = 11;

inline void renamePreset(std::vector<std::byte>& chunk, std::size_t preset, std::string_view name) {
    std::byte* record = chunk.data() + headerSize + preset * recordSize;
    std::memset(record, 0, nameSize);
    std::memcpy(record, name.data(), name.size());
}

inline std::vector<std::string> presetNames(const std::vector<std::byte>& chunk) {
    std::vector<std::string> names;
    for (std::size_t record = headerSize; record + nameSize <= chunk.size(); record += recordSize) {
        const char* name = reinterpret_cast<const char*>(chunk.data() + record);
        names.emplace_back(name, strnlen(name, nameSize));
    }
    return names;
}

} // namespace mirelon::test::chunklayout
