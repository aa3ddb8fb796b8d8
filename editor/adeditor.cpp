#include "editor/adeditor.h"

#include "editor/sizemenu.h"
#include "platform/display.h"
#include "platform/scalepreference.h"
#include "platform/toolkitconnection.h"
#include "presetsystem/bitmaps.h"
#include "resources/resources.h"

#include <chrono>
#include <cmath>
#include <exception>
#include <utility>

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

double ADEditor::wantedScale() const {
    std::optional<double> chosen;
    // What the environment says counts more: then the preferences need not be read.
    if (!mirelon::environmentScale())
        if (const auto percent = mirelon::chosenPercent())
            chosen = *percent / 100.0;
    return mirelon::nearestPictureScale(mirelon::desktopScale(hostScale, chosen));
}

void ADEditor::setScale(double newScale) {
    scale = newScale;
    const mirelon::PictureSize size = mirelon::pictureSize(mirelon::kPictureBackground);
    rect.right = static_cast<VstInt16>(rect.left + scaled(size.width, scale));
    rect.bottom = static_cast<VstInt16>(rect.top + scaled(size.height, scale));
}

bool ADEditor::getRect(ERect** rectangle) {
    const auto held = EditorThread::instance().lock();
    if (frame == nullptr)
        setScale(wantedScale());
    return CPresetSystemEditor::getRect(rectangle);
}

bool ADEditor::open(void* parent) {
    RunLoop& loop = RunLoop::instance();
    const auto held = EditorThread::instance().lock();
    close();
    auto user = std::make_unique<RunLoop::User>();
    if (parent == nullptr || effectLink == nullptr || !*user || !loop.connectToDisplay())
        return false;
    setScale(wantedScale());
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
    ++openings;
    resizeWanted = false;
    titleText = {};
    pictures.load();
    buildViews();
    effectLink->setEditorOpen(true);
    return CPresetSystemEditor::open(parent);
}

// What is added later covers what was there.
void ADEditor::buildViews() {
    parameters.emplace(*frame, *this, pictures, *effectLink);
    updates.showParametersIn(&*parameters);
    for (const layout::Caption& caption : layout::captions)
        parameters->addCaption(caption);
    for (const layout::SliderRow& row : layout::sliderRows) {
        for (const layout::Meter& meter : layout::meters)
            if (meter.above == row.parameter)
                meters.add(*frame, pictures, meter);
        parameters->addSlider(row);
    }
    for (const layout::Switch& row : layout::switches)
        parameters->addSwitch(row);
    parameters->show(kParamProcess);
    addAbout();
    addTitle();
    addMemoryLights();
}

void ADEditor::addTitle() {
    titleLine =
        new mirelon::TitleLine(layout::titleLine, layout::titleText, this, layout::titleTag);
    frame->addView(titleLine);
}

void ADEditor::addMemoryLights() {
    for (std::size_t i = 0; i < memoryLights.size(); ++i) {
        const layout::MemoryLight& light = layout::memoryLights[i];
        const CPoint offset(0, light.picture * light.rect.getHeight());
        memoryLights[i] =
            new mirelon::MemoryLight(light.rect, pictures[mirelon::kPictureMemoryLetter], offset);
        frame->addView(memoryLights[i]);
    }
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
    titleLine = nullptr;
    memoryLights.fill(nullptr);
    updates.showParametersIn(nullptr);
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
    if (std::exchange(resizeWanted, false))
        resize();
    if (frame == nullptr)
        return;
    CPresetSystemEditor::idle();
    showTitle();
    // Behind the about picture the meters stand still.
    if (about != nullptr && !about->isShown())
        meters.show(*effectLink);
    // What has changed since the base looked is drawn now, not a tick later.
    AEffGUIEditor::idle(); // NOLINT(bugprone-parent-virtual-call)
}

void ADEditor::showTitle() {
    const auto now = std::chrono::steady_clock::now();
    // While a menu, a dialog or the about picture is open nothing is explained, nor
    // pointed at anew: what comes of it is not to give way to the control that has
    // opened it.
    const bool blocked = frame->getModalView() != nullptr;
    if (!blocked) {
        const auto pointer = static_cast<const MyFrame*>(frame)->pointer();
        titleText.pointAt(pointer ? mirelon::subjectAt(*pointer) : std::nullopt, now);
    }
    titleText.advance(now);
    using enum mirelon::TextKind;
    if (const mirelon::Message* message = titleText.message())
        titleLine->show(message->text, message->failed ? failure : success);
    else if (const auto subject = titleText.explained(); subject && !blocked)
        titleLine->show(mirelon::explanationOf(*subject, *effectLink), explanation);
    else
        titleLine->show({}, explanation);
}

void ADEditor::tell(const mirelon::Message& message) {
    titleText.tell(message, std::chrono::steady_clock::now());
}

void ADEditor::chooseSize(std::optional<int> percent) {
    if (mirelon::choosePercent(percent))
        resizeWanted = true; // when nothing of the toolkit is on the stack any more
    else
        tell({"the size could not be stored", true});
}

void ADEditor::resize() {
    const double before = scale;
    const double wanted = wantedScale();
    if (wanted == before) {
        if (mirelon::environmentScale())
            tell({"MIRELON_SCALE sets the size", true});
        return;
    }
    const unsigned opening = openings;
    // The host may ask for the size while it is asked.
    setScale(wanted);
    const bool given = effectLink->resizeWindow(rect.right - rect.left, rect.bottom - rect.top);
    if (frame == nullptr || openings != opening)
        return;
    if (given) {
        // Some hosts say so and keep the room of the larger picture, whose rest
        // would stay beside the smaller one.
        if (wanted < before)
            mirelon::blackenBackground(windowId());
        frame->setZoom(wanted);
    } else {
        setScale(before);
        tell({"this size counts from the next opening on"});
    }
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
    if (tag == layout::titleTag)
        return mirelon::sizemenu::open(*frame, titleLine->pressedAt(), mirelon::chosenPercent(),
                                       this, layout::sizeMenuTag);
    if (tag == layout::sizeMenuTag)
        return chooseSize(mirelon::sizemenu::percentOf(control->getValue()));
    // What the panel does may end with this editor gone: nothing comes after it.
    if (!mirelon::isParameter(tag))
        return CPresetSystemEditor::valueChanged(control);
    effectLink->setParameterAutomated(tag, control->getValue());
    control->setDirty();
}

void ADEditor::setParameter(long index, float /*value*/) {
    memories.presetChanged();
    updates.parameterChanged(index);
}

void ADEditor::showMemories(mirelon::MemoryComparison::Equal equal) {
    memoryLights[0]->light(equal.a);
    memoryLights[1]->light(equal.b);
}

void ADEditor::beginEdit(int32_t index) {
    if (mirelon::isParameter(index))
        CPresetSystemEditor::beginEdit(index);
}

void ADEditor::endEdit(int32_t index) {
    if (mirelon::isParameter(index))
        CPresetSystemEditor::endEdit(index);
}
