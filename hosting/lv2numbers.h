// Numbers for URIs, as an LV2 host gives them out.
#pragma once

#include <lv2/urid/urid.h>
#include <map>
#include <mutex>
#include <string>

namespace mirelon::hosting {

// Any thread; waits, so not for the audio thread.
class Lv2Numbers {
  public:
    Lv2Numbers() = default;
    Lv2Numbers(const Lv2Numbers&) = delete;
    Lv2Numbers& operator=(const Lv2Numbers&) = delete;

    LV2_URID number(const std::string& uri) {
        const std::lock_guard held(access);
        return numbers.emplace(uri, static_cast<LV2_URID>(numbers.size() + 1)).first->second;
    }
    // Null for a number that was not given out; valid as long as the object.
    const char* text(LV2_URID number) {
        const std::lock_guard held(access);
        for (const auto& [uri, given] : numbers)
            if (given == number)
                return uri.c_str();
        return nullptr;
    }
    // As `text`, empty for null.
    std::string uri(LV2_URID number) {
        const char* const found = text(number);
        return found != nullptr ? found : "";
    }

    // The same for plug-ins.
    LV2_URID_Map* map() noexcept { return &mapping; }
    LV2_URID_Unmap* unmap() noexcept { return &unmapping; }

  private:
    std::mutex access;
    std::map<std::string, LV2_URID> numbers;
    LV2_URID_Map mapping{this, [](LV2_URID_Map_Handle self, const char* uri) {
                             return static_cast<Lv2Numbers*>(self)->number(uri);
                         }};
    LV2_URID_Unmap unmapping{this, [](LV2_URID_Unmap_Handle self, LV2_URID number) {
                                 return static_cast<Lv2Numbers*>(self)->text(number);
                             }};
};

} // namespace mirelon::hosting
