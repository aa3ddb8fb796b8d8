// The CLAP plug-in under check, spoken to in its own interface.
#pragma once

#include "hosting/clapinstance.h"
#include "validator/audioblock.h"
#include "validator/check.h"

#include <optional>
#include <string_view>
#include <vector>

namespace mirelon::validator {

// "parameter 3 (Gain)": its identifier and name.
std::string nameOf(const clap_param_info& parameter);

// The value at this fraction of the range, 0 to 1; of a stepped one a whole number.
double valueAt(const clap_param_info& parameter, double fraction);

// How far apart two values are, in ranges.
double distance(const clap_param_info& parameter, double one, double other);

// An instance of a file's first plug-in with a host and buffers of its own. The main
// thread is the audio thread as well, as the interface lets a host have it.
class ClapSubject {
  public:
    // `library` must outlive it. Throws PluginError when there is no such instance.
    explicit ClapSubject(const hosting::ClapLibrary& library,
                         hosting::ClapExtensions offered = hosting::ClapExtensions::all);
    // With a host that lacks the one extension of this name.
    ClapSubject(const hosting::ClapLibrary& library, std::string_view missing);

    hosting::ClapInstance& plugIn() noexcept { return instance; }
    // What the next block or flush() hands over.
    hosting::ClapInputEvents& nextEvents() noexcept { return events; }
    // The parameters that a host can set, 64 of them at most.
    const std::vector<clap_param_info>& parameters() const noexcept { return settable; }
    // Throws Skipped without such parameters.
    void needParameters() const;

    // Throws Failed when it has none for a parameter that it lists.
    double value(const clap_param_info& parameter) const;
    std::vector<double> values() const;
    // Through flush().
    void set(const clap_param_info& parameter, double value);
    void scramble(Noise& noise);

    // Throws Failed unless the parameter comes to have this value, be it once the main
    // thread has been served; Unusual where it is a little off.
    template <typename... When>
    void requireValue(const clap_param_info& parameter, double wanted, const When&... when) {
        judgeValue(parameter, wanted, joined(when...));
    }

    // Throws Failed when it refuses. Suspended before, if need be.
    void activate(double rate, int block);
    // A block of noise with the next events. Throws Failed
    // as Buffers does, and when the plug-in says that it cannot process.
    template <typename... When>
    void process(int frames, Noise& noise, const When&... when) {
        if (!buffers || buffers->in.frames() != frames)
            buffers.emplace(static_cast<int>(instance.inputChannels()),
                            static_cast<int>(instance.outputChannels()), frames);
        buffers->in.fill(noise);
        processWith(*buffers, when...);
    }
    template <typename... When>
    void processWith(Buffers<float>& given, const When&... when) {
        told.clear();
        clap_process_status status = CLAP_PROCESS_ERROR;
        given.processBy(
            [&](float** from, float** to) {
                status = instance.process(from, to, static_cast<std::uint32_t>(given.in.frames()),
                                          events.list(), told.list());
            },
            when...);
        events.clear();
        require(status != CLAP_PROCESS_ERROR, "says that it cannot process, ", when...);
    }

    // Adds to the next events.
    void add(std::uint32_t time, const clap_param_info& parameter, double value);
    // An event for each parameter, of any value, in the order of their times.
    void addForAll(int frames, Noise& noise);
    // The next events without audio.
    void flush();

  private:
    void listParameters();
    void judgeValue(const clap_param_info& parameter, double wanted, const std::string& when);

    hosting::ClapHost host;
    hosting::ClapInstance instance;
    std::vector<clap_param_info> settable;
    std::optional<Buffers<float>> buffers;
    hosting::ClapInputEvents events;
    hosting::ClapOutputEvents told;
};

} // namespace mirelon::validator
