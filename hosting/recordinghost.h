// The host's side of the interface: answers a plug-in's calls and remembers them.
#pragma once

#include "shell/vst24.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <forward_list>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace mirelon::hosting {

// One call of the plug-in to its host. `ptr` is what was passed then; whatever
// it pointed to may be gone.
struct HostCall {
    AEffect* effect = nullptr;
    VstInt32 opcode = 0;
    VstInt32 index = 0;
    VstIntPtr value = 0;
    void* ptr = nullptr;
    float opt = 0.0F;
    std::thread::id thread;
};

enum class Recording { on, off };

// Each object has a callback function of its own, so calls reach the right one
// even before the plug-in has an effect record. Every operation may be called
// on any thread. The object must outlive the instances that use its callback.
//
// Unless told otherwise it answers 2400 to audioMasterVersion, 44100 and 1024
// to audioMasterGetSampleRate and audioMasterGetBlockSize, and 0 to the rest.
class RecordingHost {
  public:
    using Answer = std::function<VstIntPtr(const HostCall&)>;

    // `Recording::off` keeps no calls, for hosts that run for hours, and answers without
    // a lock and without allocating, as calls may come on the audio thread. Throws
    // std::runtime_error when more than `mostHosts` exist at a time.
    explicit RecordingHost(Recording recording = Recording::on);
    ~RecordingHost();
    RecordingHost(const RecordingHost&) = delete;
    RecordingHost& operator=(const RecordingHost&) = delete;

    static constexpr std::size_t mostHosts = 64;

    audioMasterCallback callback() const noexcept;

    // What to answer to `opcode` from now on: a number, or the result of a
    // function that runs on the calling thread and may call the effect again. A function
    // lives as long as the host, even when another answer has taken its place. Throws
    // std::out_of_range for what is no opcode.
    void answer(VstInt32 opcode, VstIntPtr result);
    void answer(VstInt32 opcode, Answer function);

    // The calls so far, oldest first: all, or those of one opcode.
    std::vector<HostCall> calls() const;
    std::vector<HostCall> calls(VstInt32 opcode) const;
    std::size_t count(VstInt32 opcode) const;
    void forgetCalls();

  private:
    template <std::size_t Slot>
    static VstIntPtr trampoline(AEffect*, VstInt32, VstInt32, VstIntPtr, void*, float) noexcept;
    template <std::size_t... Slots>
    static audioMasterCallback trampolineOf(std::size_t slot, std::index_sequence<Slots...>);
    VstIntPtr receive(const HostCall& call);

    // The function's result, or the number where there is none.
    struct Reply {
        std::atomic<const Answer*> function{nullptr};
        std::atomic<VstIntPtr> number{0};
    };
    static constexpr std::size_t opcodes = audioMasterGetInputSpeakerArrangement + 1;
    Reply& replyTo(VstInt32 opcode) { return replies.at(static_cast<std::size_t>(opcode)); }

    std::size_t slot;
    Recording recording;
    std::array<Reply, opcodes> replies;
    mutable std::mutex access; // to what follows
    std::forward_list<Answer> functions;
    std::vector<HostCall> recorded;
};

} // namespace mirelon::hosting
