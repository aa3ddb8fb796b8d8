// Whole blocks of bytes through a CLAP host's streams, which take and give any
// part of what they are asked for.
#pragma once

#include <clap/stream.h>
#include <cstddef>
#include <cstdint>
#include <span>

namespace mirelon::clap {

// False when the host stops taking bytes.
inline bool writeWhole(const clap_ostream& stream, std::span<const std::byte> bytes) noexcept {
    while (!bytes.empty()) {
        const std::int64_t count = stream.write(&stream, bytes.data(), bytes.size());
        if (count <= 0 || static_cast<std::uint64_t>(count) > bytes.size())
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

// False when the host has fewer bytes than that, or reading them fails.
inline bool readWhole(const clap_istream& stream, std::span<std::byte> bytes) noexcept {
    while (!bytes.empty()) {
        const std::int64_t count = stream.read(&stream, bytes.data(), bytes.size());
        if (count <= 0 || static_cast<std::uint64_t>(count) > bytes.size())
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

// Whether there is nothing more to be read.
inline bool isAtEnd(const clap_istream& stream) noexcept {
    std::byte more{};
    return stream.read(&stream, &more, 1) <= 0;
}

} // namespace mirelon::clap
