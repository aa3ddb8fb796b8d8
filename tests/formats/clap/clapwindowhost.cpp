#include "tests/formats/clap/clapwindowhost.h"

#include <algorithm>
#include <iterator>

namespace mirelon::test {

ClapWindowHost::ClapWindowHost(hosting::ClapExtensions offered)
    : plugIn(offered) {
    plugIn.host.giveSizes(true);
}

ClapWindowHost::~ClapWindowHost() {
    close();
}

bool ClapWindowHost::open(std::optional<double> scale) {
    clap_window window{CLAP_WINDOW_API_X11, {}};
    window.x11 = parent->id();
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    sizesBefore = plugIn.host.sizesAsked().size();
    return gui().create(plugin(), CLAP_WINDOW_API_X11, false) &&
           (!scale || gui().set_scale(plugin(), *scale)) &&
           gui().get_size(plugin(), &width, &height) && gui().set_parent(plugin(), &window) &&
           gui().show(plugin());
}

void ClapWindowHost::close() {
    gui().hide(plugin());
    gui().destroy(plugin());
}

void ClapWindowHost::play() {
    playing = plugIn.instance.activate(48000.0, 64);
}

void ClapWindowHost::turn() {
    plugIn.instance.serve();
    if (!playing)
        return;
    float silence[2][64] = {};
    float* const channels[] = {silence[0], silence[1]};
    const hosting::ClapInputEvents none;
    hosting::ClapOutputEvents events;
    plugIn.instance.process(channels, channels, 64, none.list(), events.list());
    told.insert(told.end(), events.told().begin(), events.told().end());
}

WindowHost::Size ClapWindowHost::size() {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    gui().get_size(plugin(), &width, &height);
    return {static_cast<int>(width), static_cast<int>(height)};
}

std::vector<WindowHost::Size> ClapWindowHost::sizesAsked() {
    const auto& all = plugIn.host.sizesAsked();
    std::vector<Size> asked;
    std::transform(all.begin() + static_cast<std::ptrdiff_t>(sizesBefore), all.end(),
                   std::back_inserter(asked), [](const hosting::ClapHost::Size& each) {
                       return Size(static_cast<int>(each.width), static_cast<int>(each.height));
                   });
    return asked;
}

std::string ClapWindowHost::gestures() {
    std::string all;
    for (const hosting::ClapTold& each : told) {
        if (each.type == CLAP_EVENT_PARAM_VALUE)
            continue;
        all += each.type == CLAP_EVENT_PARAM_GESTURE_BEGIN ? 'b' : 'e';
        all += std::to_string(each.parameter);
    }
    return all;
}

std::vector<float> ClapWindowHost::valuesTold(int parameter) {
    std::vector<float> values;
    for (const hosting::ClapTold& each : told)
        if (each.type == CLAP_EVENT_PARAM_VALUE &&
            each.parameter == static_cast<clap_id>(parameter))
            values.push_back(static_cast<float>(each.value));
    return values;
}

std::optional<float> ClapWindowHost::value(int parameter) {
    return static_cast<float>(plugIn.value(parameter));
}

std::optional<ChunkImage> ClapWindowHost::bank() {
    const auto state = plugIn.instance.save();
    ChunkImage bank{};
    if (!state || state->size() != bank.size())
        return std::nullopt;
    std::ranges::copy(*state, bank.begin());
    return bank;
}

// What it tells of that by itself is noted as well.
void ClapWindowHost::set(int parameter, float value) {
    hosting::ClapInputEvents events;
    hosting::ClapOutputEvents answers;
    events.add(hosting::clapValueEvent(0, static_cast<clap_id>(parameter), value));
    plugIn.instance.flush(events.list(), answers.list());
    told.insert(told.end(), answers.told().begin(), answers.told().end());
}

} // namespace mirelon::test
