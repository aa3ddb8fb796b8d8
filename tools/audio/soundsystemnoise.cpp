#include "tools/audio/soundsystemnoise.h"

#include <dlfcn.h>

namespace mirelon::tools {

namespace {

void ignoreAlsa(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                const char* /*format*/, ...) {}
void ignoreJack(const char* /*message*/) {}

// Calls a function that takes a handler, where a library has brought it along.
template <typename Handler>
void giveTo(const char* function, Handler handler) {
    using Setter = void (*)(Handler);
    if (void* const address = dlsym(RTLD_DEFAULT, function))
        reinterpret_cast<Setter>(address)(handler);
}

} // namespace

void silenceSoundLibraries() {
    giveTo("snd_lib_error_set_handler", &ignoreAlsa);
    giveTo("jack_set_error_function", &ignoreJack);
    giveTo("jack_set_info_function", &ignoreJack);
}

} // namespace mirelon::tools
