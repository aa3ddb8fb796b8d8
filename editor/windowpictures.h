// The pictures of the window.
#pragma once

#include "platform/toolkit.h"
#include "resources/resources.h"

#include <map>

namespace mirelon {

// At the scale of the window. One thread.
class WindowPictures {
  public:
    // The window's background at `scale`; kept until another scale is asked for.
    VSTGUI::CBitmap* background(double scale);
    VSTGUI::CBitmap* background() const { return backgroundPicture; }

    // Loads all others that are missing: those that an open window shows.
    void load(double scale);
    void release();
    // A loaded picture; null for any other.
    VSTGUI::CBitmap* operator[](PictureNumber number) const;

  private:
    using Bitmap = VSTGUI::SharedPointer<VSTGUI::CBitmap>;

    Bitmap backgroundPicture;
    double backgroundScale = 0.0;
    std::map<PictureNumber, Bitmap> pictures;
};

} // namespace mirelon
