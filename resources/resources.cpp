#include "resources/resources.h"

#include "resources/picturetable.h"

#include <algorithm>

namespace mirelon {
namespace {

const EmbeddedPicture* find(int number) noexcept {
    const auto found = std::ranges::find(
        embeddedPictures, number, [](const EmbeddedPicture& picture) { return picture.number; });
    return found == embeddedPictures.end() ? nullptr : &*found;
}

} // namespace

PictureData embeddedPicture(int number, std::size_t scaleIndex) noexcept {
    const auto* picture = find(number);
    if (picture == nullptr || scaleIndex >= picture->renderings.size())
        return {nullptr, 0};
    return picture->renderings[scaleIndex];
}

PictureSize pictureSize(int number) noexcept {
    const auto* picture = find(number);
    return picture == nullptr ? PictureSize{0, 0} : picture->size;
}

int picturesInStrip(int number) noexcept {
    const auto* picture = find(number);
    return picture == nullptr ? 1 : picture->picturesDown;
}

} // namespace mirelon
