#include "hosting/recordinghost.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <stdexcept>
#include <utility>

namespace mirelon::hosting {

namespace {

// The interface gives a callback no user data, so there is one function a host.
std::array<std::atomic<RecordingHost*>, RecordingHost::mostHosts> hosts{};

std::size_t takeSlot(RecordingHost* host) {
    for (std::size_t slot = 0; slot < hosts.size(); ++slot) {
        RecordingHost* nobody = nullptr;
        if (hosts[slot].compare_exchange_strong(nobody, host))
            return slot;
    }
    throw std::runtime_error("too many hosts at a time");
}

} // namespace

// A plug-in's code is no place for a host's exceptions: they become the answer 0.
template <std::size_t Slot>
VstIntPtr RecordingHost::trampoline(AEffect* effect, VstInt32 opcode, VstInt32 index,
                                    VstIntPtr value, void* ptr, float opt) noexcept {
    try {
        RecordingHost* const host = hosts[Slot].load();
        return host == nullptr ? 0
                               : host->receive({effect, opcode, index, value, ptr, opt,
                                                std::this_thread::get_id()});
    } catch (...) {
        return 0;
    }
}

template <std::size_t... Slots>
audioMasterCallback RecordingHost::trampolineOf(std::size_t slot, std::index_sequence<Slots...>) {
    static constexpr std::array<audioMasterCallback, sizeof...(Slots)> functions{
        &trampoline<Slots>...};
    return functions[slot];
}

RecordingHost::RecordingHost(Recording recording_)
    : slot(takeSlot(this))
    , recording(recording_) {
    answer(audioMasterVersion, kVstVersion);
    answer(audioMasterGetSampleRate, 44100);
    answer(audioMasterGetBlockSize, 1024);
}

RecordingHost::~RecordingHost() {
    hosts[slot].store(nullptr);
}

audioMasterCallback RecordingHost::callback() const noexcept {
    return trampolineOf(slot, std::make_index_sequence<mostHosts>{});
}

void RecordingHost::answer(VstInt32 opcode, VstIntPtr result) {
    Reply& reply = replyTo(opcode);
    reply.number.store(result);
    reply.function.store(nullptr);
}

void RecordingHost::answer(VstInt32 opcode, Answer function) {
    Reply& reply = replyTo(opcode);
    const std::lock_guard lock(access);
    reply.function.store(&functions.emplace_front(std::move(function)));
}

VstIntPtr RecordingHost::receive(const HostCall& call) {
    if (recording == Recording::on) {
        const std::lock_guard lock(access);
        recorded.push_back(call);
    }
    // Negative numbers become large ones.
    const auto place = static_cast<std::size_t>(call.opcode);
    if (place >= replies.size())
        return 0;
    const Reply& reply = replies[place];
    const Answer* const function = reply.function.load();
    return function != nullptr ? (*function)(call) : reply.number.load();
}

std::vector<HostCall> RecordingHost::calls() const {
    const std::lock_guard lock(access);
    return recorded;
}

std::vector<HostCall> RecordingHost::calls(VstInt32 opcode) const {
    std::vector<HostCall> chosen = calls();
    std::erase_if(chosen, [opcode](const HostCall& call) { return call.opcode != opcode; });
    return chosen;
}

std::size_t RecordingHost::count(VstInt32 opcode) const {
    return calls(opcode).size();
}

void RecordingHost::forgetCalls() {
    const std::lock_guard lock(access);
    recorded.clear();
}

} // namespace mirelon::hosting
