#include "hosting/picture.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace mirelon::hosting {

Picture Picture::part(int left, int top, int right, int bottom) const {
    Picture result{right - left, bottom - top, {}};
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            result.rgb.push_back(at(x, y));
    return result;
}

std::optional<Picture> pictureOf(Display* display, unsigned long window) {
    XSync(display, False);
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, window, &attributes) == 0)
        return std::nullopt;
    Picture result{attributes.width, attributes.height, {}};
    XImage* const image = XGetImage(display, window, 0, 0, static_cast<unsigned>(result.width),
                                    static_cast<unsigned>(result.height), AllPlanes, ZPixmap);
    if (image == nullptr)
        return std::nullopt;
    result.rgb.reserve(static_cast<std::size_t>(result.width) *
                       static_cast<std::size_t>(result.height));
    for (int y = 0; y < result.height; ++y)
        for (int x = 0; x < result.width; ++x)
            result.rgb.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y)) & 0xFFFFFFU);
    XDestroyImage(image);
    return result;
}

} // namespace mirelon::hosting
