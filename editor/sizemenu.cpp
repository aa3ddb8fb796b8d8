#include "editor/sizemenu.h"

#include "resources/resources.h"

#include <algorithm>
#include <cmath>
#include <string>

using namespace VSTGUI;

namespace mirelon::sizemenu {

namespace {

constexpr std::size_t asTheDesktop = pictureScales.size(); // behind the sizes

int percentAt(std::size_t entry) {
    return static_cast<int>(std::lround(100.0F * pictureScales[entry]));
}

} // namespace

void open(CFrame& frame, const CPoint& where, std::optional<int> chosen, IControlListener* listener,
          int32_t tag) {
    auto* const menu = new COptionMenu(CRect(where, CPoint(0, 0)), listener, tag, nullptr, nullptr,
                                       COptionMenu::kPopupStyle | COptionMenu::kCheckStyle);
    std::size_t current = asTheDesktop;
    for (std::size_t entry = 0; entry < pictureScales.size(); ++entry) {
        menu->addEntry(UTF8String(std::to_string(percentAt(entry)) + " %"));
        if (chosen == percentAt(entry))
            current = entry;
    }
    menu->addEntry("as the desktop");
    menu->setValue(static_cast<float>(current));
    // While it is open the reference is the frame's.
    if (!menu->popup(&frame, where, [](COptionMenu* done) { done->forget(); }))
        menu->forget();
}

std::optional<int> percentOf(float value) {
    const auto entry = static_cast<std::size_t>(std::lround(std::max(value, 0.0F)));
    return entry < pictureScales.size() ? std::optional(percentAt(entry)) : std::nullopt;
}

} // namespace mirelon::sizemenu
