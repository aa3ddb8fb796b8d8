// The pictures of the window.
#pragma once

#include "platform/toolkit.h"
#include "resources/resources.h"

#include <map>

namespace mirelon {

// For every scale of the window. One thread.
class WindowPictures {
  public:
    // Loads the window's background, which is kept, when it is first needed.
    VSTGUI::CBitmap* background();
    VSTGUI::CBitmap* background() const { return backgroundPicture; }

    // Loads all others that are missing: those that an open window shows.
    void load();
    void release();
    // A loaded picture; null for any other.
    VSTGUI::CBitmap* operator[](PictureNumber number) const;

  private:
    using Bitmap = VSTGUI::SharedPointer<VSTGUI::CBitmap>;

    Bitmap backgroundPicture;
    std::map<PictureNumber, Bitmap> pictures;
};

} // namespace mirelon
