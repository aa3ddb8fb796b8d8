// The controls and read-outs of the parameters.
#pragma once

#include "editor/layout.h"
#include "editor/windowpictures.h"
#include "presetsystem/windowupdates.h"

class EffectLink;

namespace mirelon {

// Makes what the tables of layout.h say and shows the effect's values in it. The
// control of a parameter carries its index as tag. Lives while the window is
// open, on the thread that owns it.
class ParameterViews final : public WindowUpdates::ParameterDisplay {
  public:
    // The views go to `frame`, which owns them; all arguments outlive this object.
    ParameterViews(VSTGUI::CFrame& frame, VSTGUI::IControlListener& listener,
                   const WindowPictures& pictures, EffectLink& effect);

    // Each once, before anything is shown, in drawing order.
    void addSlider(const layout::SliderRow& row);
    void addSwitch(const layout::Switch& row);
    void addCaption(const layout::Caption& caption);

    // Reads parameter `index` from the effect; any other index does nothing. The
    // listener hears nothing of it. What does nothing while the processing is off
    // is dimmed meanwhile.
    void show(long index) override;

  private:
    void add(ParameterIndex parameter, VSTGUI::CControl* control);
    void dim(bool dimmed);
    float readOutValue(const layout::SliderRow& row, float normalised) const;

    VSTGUI::CFrame& frame;
    VSTGUI::IControlListener& listener;
    const WindowPictures& pictures;
    EffectLink& effect;

    // By parameter; owned by the frame.
    std::array<VSTGUI::CControl*, kNumParams> controls{};
    std::array<VSTGUI::CParamDisplay*, kNumParams> readOuts{}; // of the sliders
    std::array<VSTGUI::CParamDisplay*, kNumParams> captions{}; // of the sliders
};

} // namespace mirelon
