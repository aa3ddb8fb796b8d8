// The two meters of the window.
#pragma once

#include "editor/cvumeter1.h"
#include "editor/layout.h"
#include "editor/windowpictures.h"

#include <array>

class EffectLink;

namespace mirelon {

// Shown from their adding to forget(), on the thread that owns the window; at
// any other time every function does nothing.
class MeterViews {
  public:
    // Adds one meter to `frame`, which owns it.
    void add(VSTGUI::CFrame& frame, const WindowPictures& pictures, const layout::Meter& meter);
    // Before the frame goes.
    void forget() { meters.fill(nullptr); }

    // The effect's readings; 0 is in the middle.
    void show(const EffectLink& effect);
    // Both in the middle.
    void centre();

  private:
    void showReading(layout::Reading reading, float value);

    std::array<CVuMeter1*, layout::meters.size()> meters{}; // by reading
};

} // namespace mirelon
