#include "editor/adeditor.h"

#include "editor/textfield.h"
#include "platform/display.h"
#include "platform/toolkitconnection.h"
#include "presetsystem/bitmaps.h"
#include "resources/resources.h"

#include <cmath>
#include <exception>

using namespace VSTGUI;
using mirelon::EditorThread;
using mirelon::RunLoop;
namespace layout = mirelon::layout;

namespace {

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
    scale = mirelon::nearestPictureScale(mirelon::desktopScale(hostScale));
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
    CBitmap* const background = pictures.background();

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
    pictures.load();
    buildViews();
    effectLink->setEditorOpen(true);
    return CPresetSystemEditor::open(parent);
}

// What is added later covers what was there.
void ADEditor::buildViews() {
    addCaptions();
    parameters.emplace(*frame, *this, pictures, *effectLink);
    for (const layout::SliderRow& row : layout::sliderRows) {
        for (const layout::Meter& meter : layout::meters)
            if (meter.above == row.parameter)
                meters.add(*frame, pictures, meter);
        parameters->addSlider(row);
    }
    for (const layout::Switch& row : layout::switches)
        parameters->addSwitch(row);
    addAbout();
}

void ADEditor::addCaptions() {
    for (const layout::Caption& caption : layout::captions)
        frame->addView(mirelon::newTextField(
            caption.field, pictures.background(), caption.rightAligned ? kRightText : kLeftText,
            parameterNameStringConvert, layout::captionMaximum, static_cast<float>(caption.text)));
}

void ADEditor::addAbout() {
    CBitmap* const picture = pictures[mirelon::kPictureAbout];
    const CPoint size(picture->getWidth(), picture->getHeight());
    const CRect area(
        CPoint((layout::aboutAreaWidth - size.x) / 2, (layout::aboutAreaHeight - size.y) / 2),
        size);
    about = new CAbout(layout::aboutStrip, this, layout::aboutTag, picture, area, CPoint(0, 0),
                       layout::aboutTextOrigin);
    frame->addView(about);
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
    parameters.reset();
    meters.forget();
    effectLink->setEditorOpen(false);

    auto* closing = static_cast<MyFrame*>(frame);
    frame = nullptr;
    closing->retire();
    AEffGUIEditor::close(); // NOLINT(bugprone-parent-virtual-call): the panel is closed
    pictures.release();
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
    // Behind the about picture the meters stand still.
    if (about != nullptr && !about->isShown())
        meters.show(*effectLink);
    // What has changed since the base looked is drawn now, not a tick later.
    AEffGUIEditor::idle(); // NOLINT(bugprone-parent-virtual-call)
}

std::uint32_t ADEditor::windowId() const {
    return frame != nullptr ? mirelon::windowOf(*frame) : 0;
}

void ADEditor::suspend() {
    meters.centre();
}

void ADEditor::valueChanged(CControl* control) {
    const auto alive = shared(control);
    const int32_t tag = control->getTag();
    // What the panel does may end with this editor gone: nothing comes after it.
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
    parameters->show(index);
}

void ADEditor::beginEdit(int32_t index) {
    if (mirelon::isParameter(index))
        CPresetSystemEditor::beginEdit(index);
}

void ADEditor::endEdit(int32_t index) {
    if (mirelon::isParameter(index))
        CPresetSystemEditor::endEdit(index);
}
