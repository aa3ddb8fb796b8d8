#include "editor/adeditor.h"

#include "platform/display.h"
#include "platform/toolkitconnection.h"
#include "presetsystem/bitmaps.h"
#include "resources/resources.h"

#include <cmath>
#include <exception>

using namespace VSTGUI;
using mirelon::EditorThread;
using mirelon::RunLoop;

namespace {

// What a meter shows for a reading of 0.
constexpr float meterMiddle = 0.5F;

VstInt16 scaled(int pixels, double scale) {
    return static_cast<VstInt16>(std::lround(pixels * scale));
}

} // namespace

ADEditor::ADEditor(AudioEffect* effect)
    : CPresetSystemEditor(effect) {
    const mirelon::PictureSize size = mirelon::pictureSize(mirelon::kPictureBackground);
    rect = {0, 0, scaled(size.height, scale), scaled(size.width, scale)};
}

ADEditor::~ADEditor() {
    try {
        ADEditor::close();
    } catch (const std::exception&) {
        return; // out of memory: the window stays, but the host goes on
    }
}

void ADEditor::updateScale() {
    scale = mirelon::nearestPictureScale(mirelon::desktopScale());
    const mirelon::PictureSize size = mirelon::pictureSize(mirelon::kPictureBackground);
    rect.right = static_cast<VstInt16>(rect.left + scaled(size.width, scale));
    rect.bottom = static_cast<VstInt16>(rect.top + scaled(size.height, scale));
}

bool ADEditor::getRect(ERect** rectangle) {
    const auto held = EditorThread::instance().lock();
    if (frame == nullptr)
        updateScale();
    return CPresetSystemEditor::getRect(rectangle);
}

bool ADEditor::open(void* parent) {
    RunLoop& loop = RunLoop::instance();
    const auto held = EditorThread::instance().lock();
    close();
    auto user = std::make_unique<RunLoop::User>();
    if (parent == nullptr || effectLink == nullptr || !*user || !loop.connectToDisplay())
        return false;
    updateScale();
    loadBackground();

    const CRect area(rect.left, rect.top, rect.left + background->getWidth(),
                     rect.top + background->getHeight());
    auto* opening = new MyFrame(area, scale, this);
    opening->setBackground(background);
    if (!opening->openIn(parent)) {
        opening->forget();
        return false;
    }
    // The panel comes last, on top of everything.
    AEffGUIEditor::open(parent); // NOLINT(bugprone-parent-virtual-call)
    loopUser = std::move(user);
    frame = opening;
    loadBitmaps();
    buildViews();
    effectLink->setEditorOpen(true);
    return CPresetSystemEditor::open(parent);
}

void ADEditor::loadBackground() {
    if (background == nullptr || backgroundScale != scale)
        background = mirelon::loadBitmap(mirelon::kPictureBackground, scale);
    backgroundScale = scale;
}

void ADEditor::loadBitmaps() {
    const auto load = [this](Bitmap& bitmap, mirelon::PictureNumber picture) {
        if (bitmap == nullptr)
            bitmap = mirelon::loadBitmap(picture, scale);
    };
    load(sliderHandle, mirelon::kPictureSliderHandle);
    load(mark, mirelon::kPictureMark);
    load(meterUnlit, mirelon::kPictureMeterUnlit);
    load(meterLit, mirelon::kPictureMeterLit);
    load(switchPictures[kParamProcess], mirelon::kPictureProcess);
    load(switchPictures[kParamPhase], mirelon::kPicturePhase);
    load(switchPictures[kParamInvertL], mirelon::kPictureInvertL);
    load(switchPictures[kParamInvertR], mirelon::kPictureInvertR);
    load(aboutPicture, mirelon::kPictureAbout);
}

void ADEditor::close() {
    const auto held = EditorThread::instance().lock();
    if (frame == nullptr)
        return;
    if (about != nullptr)
        about->endSplash();
    // A name that is being typed counts as typed.
    frame->setFocusView(nullptr);
    CPresetSystemEditor::close();
    about = nullptr;
    sliders.fill(nullptr);
    readOuts.fill(nullptr);
    switches.fill(nullptr);
    widthMeter = nullptr;
    balanceMeter = nullptr;
    effectLink->setEditorOpen(false);

    auto* closing = static_cast<MyFrame*>(frame);
    frame = nullptr;
    closing->retire();
    AEffGUIEditor::close(); // NOLINT(bugprone-parent-virtual-call): the panel is closed
    for (Bitmap* bitmap : {&sliderHandle, &mark, &meterUnlit, &meterLit, &aboutPicture})
        *bitmap = nullptr;
    switchPictures.fill(nullptr);
    loopUser.reset();
}

void ADEditor::idle() {
    RunLoop& loop = RunLoop::instance();
    if (!EditorThread::instance().isOwnThread()) {
        if (effectLink != nullptr && effectLink->isEditorOpen())
            loop.wake();
        return;
    }
    if (!loop.isPumping())
        return loop.pump();
    if (frame == nullptr)
        return;
    CPresetSystemEditor::idle();
    AEffGUIEditor::idle(); // NOLINT(bugprone-parent-virtual-call): for what the panel changed
    // Behind the about picture the meters stand still.
    if (about == nullptr || about->isShown())
        return;
    if (widthMeter != nullptr)
        widthMeter->setValue(effectLink->getWidthMeter() + meterMiddle);
    if (balanceMeter != nullptr)
        balanceMeter->setValue(effectLink->getBalanceMeter() + meterMiddle);
}

void ADEditor::suspend() {
    for (CVuMeter1* meter : {widthMeter, balanceMeter})
        if (meter != nullptr)
            meter->setValue(meterMiddle);
}

void ADEditor::valueChanged(CControl* control) {
    const auto alive = shared(control);
    const int32_t tag = control->getTag();
    // What the panel does may end with this editor gone, so the two roads do
    // not meet behind it.
    if (!mirelon::isParameter(tag))
        return CPresetSystemEditor::valueChanged(control);
    effectLink->setParameterAutomated(tag, control->getValue());
    control->setDirty();
}

void ADEditor::setParameter(long index, float /*value*/) {
    const auto held = window.tryHold();
    if (!held)
        return pending.addParameter(index);
    showParameter(index);
}

void ADEditor::showParameter(long index) {
    if (index >= 0 && index < numSliders) {
        const auto i = static_cast<std::size_t>(index);
        const auto parameter = static_cast<VstInt32>(index);
        if (sliders[i] != nullptr)
            sliders[i]->setValue(effectLink->getParameter(parameter));
        if (readOuts[i] != nullptr)
            readOuts[i]->setValue(readOutValue(parameter));
    } else if (index >= numSliders && index < kNumParams) {
        if (COnOffButton* button = switches[static_cast<std::size_t>(index)])
            button->setValue(switchValue(static_cast<VstInt32>(index)));
    }
    frame->invalid();
}

void ADEditor::beginEdit(int32_t index) {
    if (mirelon::isParameter(index))
        CPresetSystemEditor::beginEdit(index);
}

void ADEditor::endEdit(int32_t index) {
    if (mirelon::isParameter(index))
        CPresetSystemEditor::endEdit(index);
}
