#include "editor/windowpictures.h"

#include "editor/layout.h"
#include "presetsystem/bitmaps.h"

namespace mirelon {

VSTGUI::CBitmap* WindowPictures::background() {
    if (backgroundPicture == nullptr)
        backgroundPicture = loadBitmap(kPictureBackground);
    return backgroundPicture;
}

void WindowPictures::load() {
    const auto loadOne = [&](PictureNumber number) {
        Bitmap& bitmap = pictures[number];
        if (bitmap == nullptr)
            bitmap = loadBitmap(number);
    };
    loadOne(kPictureSliderHandle);
    loadOne(kPictureMark); // no view shows it
    loadOne(kPictureMeterUnlit);
    loadOne(kPictureMeterLit);
    for (const layout::Switch& row : layout::switches)
        loadOne(row.picture);
    loadOne(kPictureMemoryLetter);
    loadOne(kPictureAbout);
}

void WindowPictures::release() {
    pictures.clear();
}

VSTGUI::CBitmap* WindowPictures::operator[](PictureNumber number) const {
    const auto found = pictures.find(number);
    return found == pictures.end() ? nullptr : found->second.get();
}

} // namespace mirelon
