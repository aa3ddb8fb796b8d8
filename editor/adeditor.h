// The editor of the product.
#pragma once

#include "editor/cabout.h"
#include "editor/memorylight.h"
#include "editor/meterviews.h"
#include "editor/myframe.h"
#include "editor/parameterviews.h"
#include "editor/titleline.h"
#include "editor/titletext.h"
#include "editor/windowpictures.h"
#include "platform/runloop.h"
#include "presetsystem/cpresetsystemeditor.h"

#include <memory>
#include <optional>

inline const VSTGUI::CColor kLightMagentaCColor(162, 221, 227, 255);
inline const VSTGUI::CColor kBlackyCColor(39, 40, 45, 255);

// Its window has one size for each scale of the screen. It shows what the effect
// holds and hands on to it what the user does; it keeps no value of its own.
//
// Opened, closed and idled by the host; the window belongs to the thread that
// opens it. On a closed editor every operation does nothing.
class ADEditor : public CPresetSystemEditor {
  public:
    // Needs no display and decodes no picture. `effect` as in the base.
    explicit ADEditor(AudioEffect* effect);
    ~ADEditor() override;

    // The window's size in screen pixels. Without an open window this looks anew at
    // what size is wanted.
    bool getRect(ERect** rectangle) override;
    // False without a display or without the parent window, or when another
    // thread has editors open. An open window is closed first.
    bool open(void* parent) override;
    void close() override;
    bool isOpen() override { return frame != nullptr; }
    // From the host: serves the run loop, which comes back here when the idle
    // timer is due. On a thread that does not own the window: only wakes it.
    void idle() override;

    void valueChanged(VSTGUI::CControl* control) override;
    using CPresetSystemEditor::setParameter;
    void setParameter(long index, float value) override;
    // The scale that the host asks for; 1 stands for none. Counts from the next
    // opening on, where the user has not chosen another.
    void setHostScale(double factor) { hostScale = factor; }
    // The X11 window, for hosts that ask for it; 0 while the editor is closed.
    std::uint32_t windowId() const;
    // Puts both meters in the middle.
    virtual void suspend();

    // Touches of controls, for hosts that record them; those of the nine
    // parameters only.
    void beginEdit(int32_t index) override;
    void endEdit(int32_t index) override;

  protected:
    void showMemories(mirelon::MemoryComparison::Equal equal) override;
    void tell(const mirelon::Message& message) override;

  private:
    double wantedScale() const;
    void setScale(double newScale);
    void chooseSize(std::optional<int> percent);
    // Makes an open window as large as is wanted, if the host goes along with it.
    void resize();
    void showTitle();
    void buildViews();
    void addAbout();
    void addTitle();
    void addMemoryLights();

    double hostScale = 1.0;
    double scale = 1.0;
    std::unique_ptr<mirelon::RunLoop::User> loopUser; // while the window is open
    mirelon::WindowPictures pictures;

    // While the window is open.
    std::optional<mirelon::ParameterViews> parameters;
    mirelon::MeterViews meters;
    unsigned openings = 0; // so far
    bool resizeWanted = false;
    mirelon::TitleText titleText;

    // Owned by the frame.
    CAbout* about = nullptr;
    mirelon::TitleLine* titleLine = nullptr;
    std::array<mirelon::MemoryLight*, mirelon::layout::memoryLights.size()> memoryLights{};
};
