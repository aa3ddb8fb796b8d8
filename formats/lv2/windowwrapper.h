// The LV2 plug-in's window: the editor of an effect of its own, which follows
// the playing one and never touches it.
#pragma once

#include "formats/effecthost.h"
#include "formats/lv2/bankmessage.h"

#include <cstdint>
#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>
#include <span>

namespace mirelon::lv2 {

// Hosts show windows of instances that they never run, in other processes too:
// what is played is known by its ports and one message only. The window's
// effect plays nothing. It starts as a new instance does, without the stored
// defaults (whose buttons load them), asks for the bank at its first idle and
// follows every parameter's port.
//
// What the user does goes the other way: a parameter at once, as a write to its
// port; another preset, name or bank at the next idle, as nine writes and the
// bank.
//
// All on the host's window thread.
class WindowWrapper : private EffectHost {
  public:
    struct Writing {
        LV2UI_Write_Function write;
        LV2UI_Controller controller;
    };

    // Opens the window in the host's. Throws std::runtime_error without
    // urid:map, without ui:parent and without a display, otherwise as
    // EffectHost does.
    WindowWrapper(Writing writing, const LV2_Feature* const* features);
    // A name that is being typed counts as typed.
    ~WindowWrapper() override;

    // The X11 window, as hosts take it.
    LV2UI_Widget widget() const;

    // Events of unknown ports, formats and sizes do nothing.
    void portEvent(std::uint32_t port, std::uint32_t size, std::uint32_t format,
                   const void* buffer);
    void idle();

  private:
    void parameterAutomated(VstInt32 index, float value) override;
    void gestureBegun(VstInt32 index) override;
    void gestureEnded(VstInt32 index) override;
    void displayChanged() override;
    bool canResizeWindow() const override;
    bool resizeWindow(int width, int height) override;

    void openIn(void* parent, const LV2_Feature* const* features);
    void followParameter(VstInt32 index, float port);
    void followBank(ChunkImage& bank);
    void applyBank(ChunkImage& bank);
    void askForBank();
    void sendEverything();
    void writeParameter(VstInt32 index, float value);
    void writeAtom(std::span<const std::byte> atom);
    void touch(VstInt32 index, bool grabbed) const;

    // How far the answer to the question for the bank is.
    enum class Answer {
        notAskedFor,
        underWay,
        outdated, // under way, and the user has done something since
        received,
    };

    Writing writing;
    MessageTypes types;
    const LV2UI_Touch* touching;
    const LV2UI_Resize* resizing;
    Answer answer = Answer::notAskedFor;
    bool following = false; // what changes now comes from the playing effect
    bool changed = false;   // the user has changed more than parameters
};

} // namespace mirelon::lv2
