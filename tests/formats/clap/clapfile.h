// The built CLAP plug-in, as a host loads it.
#pragma once

#include "hosting/clapinstance.h"
#include "processor/core/parameters.h"
#include "tests/support/temporaryfolder.h"

#include <cstdint>
#include <cstdlib>

namespace mirelon::test {

inline constexpr auto clapId = "example.dravik.mirelon";

// Loaded once per test program.
inline const hosting::ClapLibrary& clapLibrary() {
    static const hosting::ClapLibrary library(MIRELON_CLAP_FILE);
    return library;
}

// While it lives, instances find no defaults that somebody has stored. To be made
// before them.
class EmptyPreferences {
  public:
    EmptyPreferences() { setenv("XDG_CONFIG_HOME", folder.path.c_str(), 1); }

  private:
    TemporaryFolder folder;
};

// An instance with a host of its own.
struct ClapPlugIn {
    explicit ClapPlugIn(hosting::ClapExtensions offered = hosting::ClapExtensions::all)
        : host(offered) {}

    hosting::ClapHost host;
    hosting::ClapInstance instance{clapLibrary(), host, clapId};

    double value(int parameter) const {
        return instance.value(static_cast<clap_id>(parameter)).value();
    }
    // Sets a parameter while nothing plays.
    void set(int parameter, double value) {
        hosting::ClapInputEvents events;
        events.add(hosting::clapValueEvent(0, static_cast<clap_id>(parameter), value));
        instance.flush(events.list(), nullptr);
    }
};

} // namespace mirelon::test
