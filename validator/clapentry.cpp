// A CLAP file's way into a host and out again.
#include "validator/clapchecks.h"
#include "validator/clapsubject.h"

#include <array>
#include <dlfcn.h>
#include <optional>

namespace mirelon::validator {

namespace {

constexpr int times = 5;

// Keeps a library in memory beyond the last user's dlclose().
class Kept {
  public:
    explicit Kept(const std::string& file)
        : handle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {}
    ~Kept() {
        if (handle != nullptr)
            dlclose(handle);
    }
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;

  private:
    void* handle;
};

void makeAndPlay(const hosting::ClapLibrary& library, Noise& noise) {
    ClapSubject plugIn(library);
    plugIn.activate(48000.0, 64);
    plugIn.process(64, noise, "after its file was initialised again");
}

std::string reloaded(const Subject& subject) {
    Noise noise(subject.seed);
    for (int i = 0; i < times; ++i) {
        doing("loading the file after it was unloaded ", i, " times");
        makeAndPlay(hosting::ClapLibrary(subject.plugin), noise);
    }
    const Kept kept(subject.plugin);
    for (int i = 0; i < times; ++i) {
        doing("calling init() in a file that stays in memory, after ", i, " calls of deinit()");
        makeAndPlay(hosting::ClapLibrary(subject.plugin), noise);
    }
    return {};
}

std::string counted(const Subject& subject) {
    Noise noise(subject.seed);
    doing("calling init() for a second user of the file");
    const hosting::ClapLibrary first(subject.plugin);
    std::optional<hosting::ClapLibrary> second(subject.plugin);
    makeAndPlay(*second, noise);
    doing("calling deinit() for one of two users of the file");
    second.reset();
    const void* const factory = first.entry().get_factory(CLAP_PLUGIN_FACTORY_ID);
    require(factory != nullptr, "has no factory for one user of its file once another has left");
    makeAndPlay(first, noise);
    return {};
}

constexpr std::array clapentryTable{
    Check{"entry-reloaded", 1, Formats::clap, reloaded, 60},
    Check{"entry-counted", 1, Formats::clap, counted, 30, Guard::none, Severity::unusual},
};

} // namespace

std::span<const Check> clapEntryChecks() {
    return clapentryTable;
}

} // namespace mirelon::validator
