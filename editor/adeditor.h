// The plug-in's window.
#pragma once

#include "editor/cabout.h"
#include "editor/cvumeter1.h"
#include "editor/myframe.h"
#include "platform/runloop.h"
#include "presetsystem/cpresetsystemeditor.h"
#include "processor/core/parameters.h"

#include <array>
#include <memory>

inline const VSTGUI::CColor kLightMagentaCColor(162, 221, 227, 255);
inline const VSTGUI::CColor kBlackyCColor(39, 40, 45, 255);

// One fixed-size panel: five sliders with read-outs, four switches, two meters,
// the about strip and the preset panel. Mirrors the effect's values and sends
// the user's moves to it.
//
// Opened, closed and idled by the host; the window belongs to the thread that
// opens it. Every operation on a closed editor does nothing.
class ADEditor : public CPresetSystemEditor {
  public:
    // Needs no display and decodes no picture. `effect` as in the base.
    explicit ADEditor(AudioEffect* effect);
    ~ADEditor() override;

    // The window's size in screen pixels. While the editor is closed this looks
    // at the desktop's scale anew.
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
    // Puts both meters in the middle.
    virtual void suspend();

    // Touches of controls, for hosts that record them; those of the nine
    // parameters only.
    void beginEdit(int32_t index) override;
    void endEdit(int32_t index) override;

  protected:
    void showParameter(long index) override;

  private:
    static constexpr int numSliders = 5;

    void updateScale();
    void loadBackground();
    void loadBitmaps();
    void buildViews();
    void addCaptions();
    void addMeter(CVuMeter1*& meter, VSTGUI::CPoint at);
    void addSlider(int index);
    void addSwitches();
    void addAbout();
    float readOutValue(int index) const;
    float switchValue(int index) const;

    double scale = 1.0;
    std::unique_ptr<mirelon::RunLoop::User> loopUser; // while the window is open

    using Bitmap = VSTGUI::SharedPointer<VSTGUI::CBitmap>;
    Bitmap background; // kept from the first opening on
    double backgroundScale = 0.0;
    // While the window is open.
    Bitmap sliderHandle;
    Bitmap mark; // loaded with the others; no view shows it
    Bitmap meterUnlit;
    Bitmap meterLit;
    std::array<Bitmap, kNumParams> switchPictures; // by parameter
    Bitmap aboutPicture;

    // Owned by the frame; null while the window is closed.
    std::array<VSTGUI::CHorizontalSlider*, numSliders> sliders{};
    std::array<VSTGUI::CParamDisplay*, numSliders> readOuts{};
    std::array<VSTGUI::COnOffButton*, kNumParams> switches{}; // by parameter
    CVuMeter1* widthMeter = nullptr;
    CVuMeter1* balanceMeter = nullptr;
    CAbout* about = nullptr;
};
