#include "hosting/clapeditor.h"

namespace mirelon::hosting {

bool ClapEditor::exists() const {
    const clap_plugin_gui* const gui = instance.window();
    return gui != nullptr && gui->is_api_supported(plugin(), CLAP_WINDOW_API_X11, false);
}

bool ClapEditor::create() {
    return instance.window()->create(plugin(), CLAP_WINDOW_API_X11, false);
}

bool ClapEditor::open(std::uintptr_t parent) {
    close();
    if (!exists() || !create())
        return false;
    const clap_plugin_gui& gui = *instance.window();
    clap_window window{CLAP_WINDOW_API_X11, {}};
    window.x11 = parent;
    isOpen = gui.set_parent(plugin(), &window);
    if (isOpen)
        gui.show(plugin());
    else
        gui.destroy(plugin());
    return isOpen;
}

void ClapEditor::close() {
    if (!isOpen)
        return;
    instance.window()->hide(plugin());
    instance.window()->destroy(plugin());
    isOpen = false;
}

std::optional<ClapEditor::Size> ClapEditor::size() {
    if (!isOpen && (!exists() || !create()))
        return std::nullopt;
    Size size{};
    const bool known = instance.window()->get_size(plugin(), &size.width, &size.height);
    if (!isOpen)
        instance.window()->destroy(plugin());
    return known ? std::optional(size) : std::nullopt;
}

} // namespace mirelon::hosting
