// What is to be seen in a window.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

struct _XDisplay;

namespace mirelon::hosting {

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> rgb; // 0xRRGGBB, row by row

    std::uint32_t at(int x, int y) const {
        return rgb[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)];
    }
    // The part from (left, top) to just before (right, bottom).
    Picture part(int left, int top, int right, int bottom) const;
    bool operator==(const Picture&) const = default;
};

// Nothing when there is no such window, or when it is not all on the display.
std::optional<Picture> pictureOf(_XDisplay* display, unsigned long window);

} // namespace mirelon::hosting
