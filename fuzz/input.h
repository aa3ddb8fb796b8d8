// What a fuzzer feeds, taken piece by piece; zeros once it is used up.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace mirelon::fuzz {

class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size)
        : rest(reinterpret_cast<const std::byte*>(data), size) {}

    bool empty() const { return rest.empty(); }
    std::size_t left() const { return rest.size(); }

    template <typename T>
    T take() {
        T value{};
        const std::size_t count = std::min(sizeof value, rest.size());
        if (count > 0)
            std::memcpy(&value, rest.data(), count);
        rest = rest.subspan(count);
        return value;
    }
    // Exactly `count` bytes in memory of exactly that size, so that reading
    // past them is noticed.
    std::vector<std::byte> bytes(std::size_t count) {
        std::vector<std::byte> taken(count);
        for (std::byte& b : taken)
            b = take<std::byte>();
        return taken;
    }
    std::string text(std::size_t most) {
        std::string taken;
        while (taken.size() < most && !empty()) {
            const char c = take<char>();
            if (c == '\0')
                break;
            taken.push_back(c);
        }
        return taken;
    }

  private:
    std::span<const std::byte> rest;
};

// Ends the process where what must hold does not.
inline void expect(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace mirelon::fuzz
