#include "formats/lv2/scalefactor.h"

#include "formats/lv2/features.h"

#include <cstring>
#include <lv2/atom/atom.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

namespace mirelon::lv2 {

namespace {

template <typename Number>
Number valueOf(const LV2_Options_Option& option) {
    Number value{};
    std::memcpy(&value, option.value, sizeof value);
    return value;
}

} // namespace

double scaleFactor(const LV2_Feature* const* features) {
    const auto* const map = featureData<const LV2_URID_Map>(features, LV2_URID__map);
    const auto* option = featureData<const LV2_Options_Option>(features, LV2_OPTIONS__options);
    if (map == nullptr || option == nullptr)
        return 1.0;
    const auto number = [map](const char* uri) { return map->map(map->handle, uri); };
    const LV2_URID wanted = number(LV2_UI__scaleFactor);
    for (; option->key != 0 || option->value != nullptr; ++option) {
        if (option->context != LV2_OPTIONS_INSTANCE || option->key != wanted ||
            option->value == nullptr)
            continue;
        if (option->type == number(LV2_ATOM__Float) && option->size == sizeof(float))
            return static_cast<double>(valueOf<float>(*option));
        if (option->type == number(LV2_ATOM__Double) && option->size == sizeof(double))
            return valueOf<double>(*option);
    }
    return 1.0;
}

} // namespace mirelon::lv2
