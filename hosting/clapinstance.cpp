#include "hosting/clapinstance.h"

#include "hosting/clapstreams.h"
#include "hosting/hostingerror.h"

#include <array>

namespace mirelon::hosting {

namespace {

clap_audio_buffer bufferOf(float* const* channels, std::uint32_t count) {
    // The interface's channel lists are never written.
    return {const_cast<float**>(channels), nullptr, count, 0, 0};
}

clap_audio_buffer bufferOf(double* const* channels, std::uint32_t count) {
    return {nullptr, const_cast<double**>(channels), count, 0, 0};
}

} // namespace

ClapInstance::ClapInstance(const ClapLibrary& library, ClapHost& host, const std::string& id)
    : host(host)
    , made(library.factory().create_plugin(&library.factory(), host.record(), id.c_str())) {
    if (made == nullptr)
        throw PluginError(library.file().string() + ": it makes no plug-in " + id);
    if (!made->init(made)) {
        made->destroy(made);
        throw PluginError(library.file().string() + ": " + id + " cannot be initialised");
    }
    params = extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    state = extension<clap_plugin_state>(CLAP_EXT_STATE);
    gui = extension<clap_plugin_gui>(CLAP_EXT_GUI);
    timers = extension<clap_plugin_timer_support>(CLAP_EXT_TIMER_SUPPORT);
    readPorts();
}

void ClapInstance::readPorts() {
    const auto* const ports = extension<clap_plugin_audio_ports>(CLAP_EXT_AUDIO_PORTS);
    if (ports == nullptr)
        return;
    doubles = true;
    for (const bool isInput : {true, false}) {
        clap_audio_port_info info{};
        const std::uint32_t count = ports->count(made, isInput);
        if (count == 0 || !ports->get(made, 0, isInput, &info))
            continue;
        if (count > 1) {
            made->destroy(made);
            throw PluginError("the plug-in has several audio ports in one direction");
        }
        (isInput ? inputs : outputs) = info.channel_count;
        doubles = doubles && (info.flags & CLAP_AUDIO_PORT_SUPPORTS_64BITS) != 0;
    }
}

ClapInstance::~ClapInstance() {
    deactivate();
    made->destroy(made);
}

bool ClapInstance::activate(double rate, std::uint32_t mostFrames) {
    deactivate();
    if (!made->activate(made, rate, 1, mostFrames))
        return false;
    active = true;
    played = 0;
    return startProcessing();
}

void ClapInstance::deactivate() {
    if (!active)
        return;
    stopProcessing();
    made->deactivate(made);
    active = false;
}

bool ClapInstance::startProcessing() {
    if (active && !processing)
        processing = made->start_processing(made);
    return processing;
}

void ClapInstance::stopProcessing() {
    if (processing)
        made->stop_processing(made);
    processing = false;
}

void ClapInstance::reset() {
    if (active)
        made->reset(made);
}

template <typename Sample>
clap_process_status ClapInstance::process(Sample* const* from, Sample* const* to,
                                          std::uint32_t frames, const clap_input_events* in,
                                          const clap_output_events* out) {
    const clap_audio_buffer input = bufferOf(from, inputs);
    clap_audio_buffer output = bufferOf(to, outputs);
    const clap_process cycle{
        played, frames, nullptr, &input, &output, inputs > 0 ? 1U : 0U, outputs > 0 ? 1U : 0U,
        in,     out};
    played += frames;
    return made->process(made, &cycle);
}

template clap_process_status ClapInstance::process(float* const*, float* const*, std::uint32_t,
                                                   const clap_input_events*,
                                                   const clap_output_events*);
template clap_process_status ClapInstance::process(double* const*, double* const*, std::uint32_t,
                                                   const clap_input_events*,
                                                   const clap_output_events*);

void ClapInstance::flush(const clap_input_events* in, const clap_output_events* out) {
    if (params != nullptr)
        params->flush(made, in, out);
}

std::uint32_t ClapInstance::parameterCount() const {
    return params != nullptr ? params->count(made) : 0;
}

std::optional<clap_param_info> ClapInstance::parameterInfo(std::uint32_t index) const {
    clap_param_info info{};
    if (params == nullptr || !params->get_info(made, index, &info))
        return std::nullopt;
    return info;
}

std::optional<double> ClapInstance::value(clap_id parameter) const {
    double value = 0.0;
    if (params == nullptr || !params->get_value(made, parameter, &value))
        return std::nullopt;
    return value;
}

std::optional<std::string> ClapInstance::text(clap_id parameter, double value) const {
    std::array<char, 256> text{};
    if (params == nullptr ||
        !params->value_to_text(made, parameter, value, text.data(), text.size()))
        return std::nullopt;
    return text.data();
}

std::optional<double> ClapInstance::valueOf(clap_id parameter, const std::string& text) const {
    double value = 0.0;
    if (params == nullptr || !params->text_to_value(made, parameter, text.c_str(), &value))
        return std::nullopt;
    return value;
}

std::optional<std::vector<std::byte>> ClapInstance::save(std::size_t atOnce) const {
    ClapOutputStream stream(atOnce);
    if (!save(*stream.stream()))
        return std::nullopt;
    return stream.bytes();
}

bool ClapInstance::save(const clap_ostream& to) const {
    return state != nullptr && state->save(made, &to);
}

bool ClapInstance::load(std::span<const std::byte> bytes, std::size_t atOnce) {
    const ClapInputStream stream(bytes, atOnce);
    return load(*stream.stream());
}

bool ClapInstance::load(const clap_istream& from) {
    return state != nullptr && state->load(made, &from);
}

void ClapInstance::serve() {
    for (const clap_id timer : host.takeDueTimers())
        if (timers != nullptr)
            timers->on_timer(made, timer);
    if (host.takeCallbackRequest())
        made->on_main_thread(made);
}

} // namespace mirelon::hosting
