// What a host offers when it makes an instance.
#pragma once

#include <cstring>
#include <lv2/core/lv2.h>

namespace mirelon::lv2 {

// The data of the feature `uri`; null when the host does not have it. The list
// ends with a null pointer and may be null itself.
template <typename Data>
Data* featureData(const LV2_Feature* const* features, const char* uri) noexcept {
    for (; features != nullptr && *features != nullptr; ++features)
        if ((*features)->URI != nullptr && std::strcmp((*features)->URI, uri) == 0)
            return static_cast<Data*>((*features)->data);
    return nullptr;
}

} // namespace mirelon::lv2
