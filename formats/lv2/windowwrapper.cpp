#include "formats/lv2/windowwrapper.h"

#include "editor/adeditor.h"
#include "formats/lv2/features.h"
#include "formats/lv2/names.h"
#include "formats/lv2/portvalues.h"
#include "formats/lv2/scalefactor.h"

#include <cstring>
#include <lv2/urid/urid.h>
#include <stdexcept>

namespace mirelon::lv2 {

namespace {

// Nothing is played here.
constexpr float anyRate = 44100.0F;
constexpr VstInt32 anyBlock = 1024;

// The protocol of plain numbers for control ports.
constexpr std::uint32_t numbers = 0;

ADEditor& editorOf(const Mirelon& effect) {
    return *static_cast<ADEditor*>(effect.getEditor());
}

// While it lives, `flag` is up.
class Raised {
  public:
    explicit Raised(bool& flag) noexcept
        : flag(flag) {
        flag = true;
    }
    ~Raised() { flag = false; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

  private:
    bool& flag;
};

} // namespace

WindowWrapper::WindowWrapper(Writing writing, const LV2_Feature* const* features)
    : EffectHost(anyRate, anyBlock)
    , writing(writing)
    , types(featureData<LV2_URID_Map>(features, LV2_URID__map))
    , touching(featureData<const LV2UI_Touch>(features, LV2_UI__touch))
    , resizing(featureData<const LV2UI_Resize>(features, LV2_UI__resize)) {
    void* const parent = featureData<void>(features, LV2_UI__parent);
    if (!types.known() || parent == nullptr)
        throw std::runtime_error("the host lacks urid:map or ui:parent");
    {
        const Raised own(following);
        effect().initPresets();
        effect().setPresetNo(0);
    }
    openIn(parent, features);
}

WindowWrapper::~WindowWrapper() {
    dispatch(effEditClose);
    if (changed)
        sendEverything();
}

void WindowWrapper::openIn(void* parent, const LV2_Feature* const* features) {
    ADEditor& editor = editorOf(effect());
    editor.setHostScale(scaleFactor(features));
    if (dispatch(effEditOpen, 0, 0, parent) == 0)
        throw std::runtime_error("the window cannot be opened");
    ERect* rect = nullptr;
    if (canResizeWindow() && editor.getRect(&rect))
        resizeWindow(rect->right - rect->left, rect->bottom - rect->top);
}

LV2UI_Widget WindowWrapper::widget() const {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an X11 window is a number
    return reinterpret_cast<LV2UI_Widget>(std::uintptr_t{editorOf(effect()).windowId()});
}

// --- From the playing effect ---

void WindowWrapper::portEvent(std::uint32_t port, std::uint32_t size, std::uint32_t format,
                              const void* buffer) {
    if (buffer == nullptr)
        return;
    if (format == numbers && size == sizeof(float)) {
        float value = 0.0F;
        std::memcpy(&value, buffer, sizeof value);
        if (isParameterPort(port))
            followParameter(parameterOfPort(port), value);
        else if (port == kPortWidthMeter)
            effect().showReadings(value, effect().getBalanceMeter());
        else if (port == kPortBalanceMeter)
            effect().showReadings(effect().getWidthMeter(), value);
    } else if (format == types.eventTransfer && port == kPortNotify) {
        ChunkImage bank;
        if (readMessage({static_cast<const std::byte*>(buffer), size}, types, bank) ==
            MessageKind::bank)
            followBank(bank);
    }
}

// A host echoes what the window writes, a little later: a control in the
// user's hand does not follow, nor does one that a preset has just moved.
void WindowWrapper::followParameter(VstInt32 index, float port) {
    if (isHeld(index) || changed)
        return;
    if (const auto change = changeByPort(index, effect().getParameter(index), port))
        effect().setParameter(index, *change);
}

void WindowWrapper::followBank(ChunkImage& bank) {
    // The user was faster: what they chose goes out first, and the bank that
    // is asked for then has it.
    if (changed)
        sendEverything();
    else if (answer != Answer::outdated)
        return applyBank(bank);
    askForBank();
}

void WindowWrapper::applyBank(ChunkImage& bank) {
    answer = Answer::received;
    const Raised own(following);
    effect().applyChunk(bank);
    changed = false;
}

// --- From the user ---

void WindowWrapper::parameterAutomated(VstInt32 index, float value) {
    writeParameter(index, value);
}

void WindowWrapper::gestureBegun(VstInt32 index) {
    touch(index, true);
}

void WindowWrapper::gestureEnded(VstInt32 index) {
    touch(index, false);
}

void WindowWrapper::displayChanged() {
    changed = changed || !following;
}

bool WindowWrapper::canResizeWindow() const {
    return resizing != nullptr && resizing->ui_resize != nullptr;
}

bool WindowWrapper::resizeWindow(int width, int height) {
    return resizing->ui_resize(resizing->handle, width, height) == 0;
}

void WindowWrapper::idle() {
    dispatch(effEditIdle);
    if (changed)
        sendEverything();
    if (answer == Answer::notAskedFor)
        askForBank();
}

void WindowWrapper::sendEverything() {
    changed = false;
    for (VstInt32 index = 0; index < kNumParams; ++index)
        writeParameter(index, effect().getParameter(index));
    ChunkImage bank;
    effect().writeChunk(bank);
    writeAtom(formBankMessage(types, bank));
}

void WindowWrapper::askForBank() {
    answer = Answer::underWay;
    writeAtom(formGetMessage(types));
}

void WindowWrapper::writeParameter(VstInt32 index, float value) {
    if (answer == Answer::underWay)
        answer = Answer::outdated;
    const float port = portValueOf(index, value);
    writing.write(writing.controller, portOfParameter(index), sizeof port, numbers, &port);
}

void WindowWrapper::writeAtom(std::span<const std::byte> atom) {
    writing.write(writing.controller, kPortControl, static_cast<std::uint32_t>(atom.size()),
                  types.eventTransfer, atom.data());
}

void WindowWrapper::touch(VstInt32 index, bool grabbed) const {
    if (touching != nullptr && touching->touch != nullptr)
        touching->touch(touching->handle, portOfParameter(index), grabbed);
}

} // namespace mirelon::lv2
