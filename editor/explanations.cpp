#include "editor/explanations.h"

#include "presetsystem/displayname.h"
#include "presetsystem/effectlink.h"

#include <cmath>

using VSTGUI::CPoint;
using VSTGUI::CRect;

namespace mirelon {

namespace {

using Part = Subject::Part;

// The ends of a meter are this far from its middle, which is a reading of 0.
constexpr float decibelsToTheEnd = 12.0F;
constexpr float readingAtTheEnd = 0.5F;

CRect areaOf(const layout::SliderRow& row) {
    return {layout::sliderLeft, static_cast<double>(row.top), layout::sliderRight,
            static_cast<double>(row.top + pictureSize(kPictureSliderHandle).height)};
}

CRect areaOf(const layout::Switch& row) {
    const int height = pictureSize(layout::switchHeightOf).height / 2;
    return {CPoint(row.left, layout::switchTop), CPoint(pictureSize(row.widthOf).width, height)};
}

CRect areaOf(const layout::Meter& meter) {
    const PictureSize size = pictureSize(kPictureMeterUnlit);
    return {meter.at, CPoint(size.width, size.height)};
}

std::string withValue(std::string_view text, std::string_view value) {
    constexpr std::string_view place = "{}";
    std::string result(text);
    if (const std::size_t at = result.find(place); at != std::string::npos)
        result.replace(at, place.size(), value);
    return result;
}

// As the read-out beside the slider shows it.
std::string valueOf(long parameter, EffectLink& effect) {
    const auto index = static_cast<std::int32_t>(parameter);
    const layout::SliderRow* const row = layout::sliderOf(parameter);
    if (row == nullptr)
        return effect.getParameter(index) < 0.5F ? "off" : "on";
    std::array<char, 256> text{};
    row->text.converter(row->text.factor * (row->text.inOwnUnit ? effect.getParameterValue(index)
                                                                : effect.getParameter(index)),
                        text.data());
    return text.data();
}

std::string readingOf(layout::Reading reading, const EffectLink& effect) {
    const float value =
        reading == layout::Reading::width ? effect.getWidthMeter() : effect.getBalanceMeter();
    const long decibels = std::lround(value * (decibelsToTheEnd / readingAtTheEnd));
    std::string text(decibels > 0 ? "+" : "");
    return text.append(std::to_string(decibels));
}

std::string currentName(EffectLink& effect) {
    const std::int32_t current = effect.getPresetNo();
    if (!isPresetIndex(current))
        return {};
    return validUtf8(effect.bank()[static_cast<std::size_t>(current)].name().data());
}

} // namespace

std::optional<Subject> subjectAt(const CPoint& point) {
    // The panel's controls lie above all others.
    for (const panel::Control& control : panel::controls)
        if (control.rect.pointInside(point))
            return Subject{Part::panelControl, control.tag};
    for (const layout::MemoryLight& light : layout::memoryLights)
        if (light.rect.pointInside(point))
            return Subject{Part::memoryLetter};
    for (const layout::SliderRow& row : layout::sliderRows) {
        if (areaOf(row).pointInside(point))
            return Subject{Part::parameter, row.parameter};
        if (row.readOut.rect.pointInside(point))
            return Subject{Part::readOut, row.parameter};
    }
    for (const layout::Switch& row : layout::switches)
        if (areaOf(row).pointInside(point))
            return Subject{Part::parameter, row.parameter};
    for (const layout::Meter& meter : layout::meters)
        if (areaOf(meter).pointInside(point))
            return Subject{Part::meter, static_cast<int>(meter.reading)};
    if (layout::aboutStrip.pointInside(point))
        return Subject{Part::about};
    if (layout::titleLine.pointInside(point))
        return Subject{Part::title};
    return std::nullopt;
}

std::string explanationOf(const Subject& subject, EffectLink& effect) {
    using namespace explanations;
    switch (subject.part) {
    case Part::parameter:
    case Part::readOut:
        for (const OfParameter& of : parameters)
            if (of.parameter == subject.index)
                return subject.part == Part::readOut
                           ? std::string(of.readOut)
                           : withValue(of.control, valueOf(of.parameter, effect));
        break;
    case Part::meter:
        for (const OfMeter& of : meters)
            if (static_cast<int>(of.reading) == subject.index)
                return withValue(of.text, readingOf(of.reading, effect));
        break;
    case Part::panelControl:
        for (const OfPanel& of : panelControls)
            if (of.tag == subject.index)
                return withValue(of.text, currentName(effect));
        break;
    case Part::about:
        return std::string(about);
    case Part::title:
        return std::string(title);
    case Part::memoryLetter:
        return std::string(memoryLetter);
    }
    return {};
}

} // namespace mirelon
