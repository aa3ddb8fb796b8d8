// Numbers for URIs, as a host gives them out.
#pragma once

#include <cstdint>
#include <lv2/urid/urid.h>
#include <map>
#include <mutex>
#include <string>

namespace mirelon::test {

class Urids {
  public:
    LV2_URID number(const std::string& uri) {
        const std::lock_guard held(access);
        return numbers.emplace(uri, static_cast<LV2_URID>(numbers.size() + 1)).first->second;
    }
    LV2_URID_Map* map() { return &mapping; }

  private:
    std::mutex access;
    std::map<std::string, LV2_URID> numbers;
    LV2_URID_Map mapping{this, [](LV2_URID_Map_Handle self, const char* uri) {
                             return static_cast<Urids*>(self)->number(uri);
                         }};
};

} // namespace mirelon::test
