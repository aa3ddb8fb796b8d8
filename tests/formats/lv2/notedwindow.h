// A window of the LV2 plug-in whose every call to its host is noted.
#pragma once

#include "hosting/lv2window.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace mirelon::test {

struct WindowNotes : hosting::Lv2WindowListener {
    void written(const hosting::Lv2Write& write) override {
        writes.push_back(write);
        if (onWrite)
            onWrite(write);
    }
    void touched(std::uint32_t port, bool grabbed) override {
        touches += grabbed ? 'b' : 'e';
        touches += std::to_string(port);
    }
    void resized(int width, int height) override { sizes.emplace_back(width, height); }

    std::vector<hosting::Lv2Write> writes;  // so far, oldest first
    std::string touches;                    // "b6e6": port 6 grabbed and released
    std::vector<std::pair<int, int>> sizes; // that the window has asked for
    std::function<void(const hosting::Lv2Write&)> onWrite;
};

// The notes come first: they hear the window's constructor and destructor.
class NotedWindow : public WindowNotes, public hosting::Lv2Window {
  public:
    NotedWindow(const hosting::Lv2Bundle& bundle, const Options& options)
        : Lv2Window(bundle, options, *this) {}
};

} // namespace mirelon::test
