#include "presetsystem/presetpanel.h"

#include "presetsystem/bitmaps.h"
#include "presetsystem/displayname.h"
#include "presetsystem/panelcontrols.h"
#include "presetsystem/panellayout.h"

#include <map>

using namespace VSTGUI;

namespace mirelon {

namespace {

constexpr int32_t menuStyle = COptionMenu::kPopupStyle | COptionMenu::kCheckStyle |
                              CParamDisplay::kNoTextStyle | CParamDisplay::kNoDrawStyle;

UTF8String shown(const PresetName& name) {
    return UTF8String(validUtf8(name.data()));
}

COptionMenu* newMenu(const panel::Control& control, IControlListener* listener,
                     CBitmap* background) {
    auto* menu =
        new COptionMenu(control.rect, listener, control.tag, background, nullptr, menuStyle);
    menu->setBackOffset(control.rect.getTopLeft());
    return menu;
}

} // namespace

void PresetPanel::build(CFrame& frame, IControlListener* listener) {
    std::map<PictureNumber, SharedPointer<CBitmap>> pictures;
    pictures[kPictureBackground] = frame.getBackground(); // large: not decoded twice
    for (const panel::Control& control : panel::controls) {
        SharedPointer<CBitmap>& picture = pictures[control.picture];
        if (picture == nullptr)
            picture = loadBitmap(control.picture);
        const auto& [tag, kind, rect, number] = control;
        switch (kind) {
        case panel::Kind::nameField:
            nameField = newNameField(rect, listener, tag, picture);
            frame.addView(nameField);
            break;
        case panel::Kind::presetMenu:
            menu = newMenu(control, listener, picture);
            frame.addView(menu);
            break;
        case panel::Kind::rocker:
            frame.addView(newRockerSwitch(rect, listener, tag, picture));
            break;
        case panel::Kind::saveLoadButton:
            frame.addView(newSaveLoadButton(rect, listener, tag, picture));
            break;
        case panel::Kind::button:
            frame.addView(newKickButton(rect, listener, tag, picture, false));
            break;
        case panel::Kind::doubleClickButton:
            frame.addView(newKickButton(rect, listener, tag, picture, true));
            break;
        }
    }
}

void PresetPanel::forget() {
    nameField = nullptr;
    menu = nullptr;
}

void PresetPanel::showBank(const PresetBank& bank, int current) {
    if (menu == nullptr)
        return;
    UTF8String currentTitle;
    // Entries are renamed rather than replaced: the menu may be on show.
    for (int i = 0; i < kNumPresets; ++i) {
        const UTF8String title = shown(bank[static_cast<std::size_t>(i)].name());
        if (CMenuItem* entry = menu->getEntry(i))
            entry->setTitle(title);
        else
            // As an item: a plain title "-" would become a separator.
            menu->addEntry(new CMenuItem(title));
        if (i == current)
            currentTitle = title;
    }
    menu->setValue(static_cast<float>(current));
    nameField->setText(currentTitle);
}

void PresetPanel::showFirstNames(std::span<const PresetName> names) {
    if (menu == nullptr)
        return;
    int preset = 0;
    for (const PresetName& name : names)
        if (CMenuItem* entry = menu->getEntry(preset++))
            entry->setTitle(shown(name));
}

void PresetPanel::showCurrentName(const PresetName& name) {
    showInField(name);
    if (menu != nullptr && menu->getCurrent() != nullptr)
        menu->getCurrent()->setTitle(shown(name));
}

void PresetPanel::showInField(const PresetName& name) {
    if (nameField != nullptr)
        nameField->setText(shown(name));
}

bool PresetPanel::select(int preset) {
    if (menu == nullptr || menu->getEntry(preset) == nullptr)
        return false;
    menu->setValue(static_cast<float>(preset));
    return true;
}

std::optional<PresetName> PresetPanel::typedName() const {
    if (nameField == nullptr)
        return std::nullopt;
    return presetName(nameField->getText().data());
}

PresetName PresetPanel::nameOf(int preset, const PresetName& stored) const {
    if (menu == nullptr || menu->getEntry(preset) == nullptr)
        return stored;
    const UTF8String title = menu->getEntry(preset)->getTitle();
    return title == shown(stored) ? stored : presetName(title.data());
}

} // namespace mirelon
