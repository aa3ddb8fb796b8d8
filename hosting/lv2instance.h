// One instance of an LV2 plug-in, with all that its ports need.
#pragma once

#include "hosting/lv2bundle.h"
#include "hosting/messagequeue.h"

#include <cstddef>
#include <cstdint>
#include <lv2/atom/atom.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mirelon::hosting {

// A property as an instance has stored it.
struct Lv2Property {
    std::vector<std::byte> value;
    std::string type; // a URI
    std::uint32_t flags = 0;
    bool operator==(const Lv2Property&) const = default;
};
using Lv2State = std::map<std::string, Lv2Property>;

enum class Lv2Features { none, all };

// Activated from construction to destruction. Every port is connected; the
// control ports stand at their defaults.
class Lv2Instance {
  public:
    // The most frames in a run, unless told otherwise.
    static constexpr std::int32_t usualLargestBlock = 8192;

    // Throws PluginError when the plug-in makes no instance, when it needs a
    // feature that is not offered here, and when it has a port of a kind that is
    // not. With Lv2Features::none it is offered nothing.
    Lv2Instance(const Lv2Bundle& bundle, double rate, Lv2Features features = Lv2Features::all,
                std::int32_t largestBlock = usualLargestBlock);
    ~Lv2Instance();
    Lv2Instance(const Lv2Instance&) = delete;
    Lv2Instance& operator=(const Lv2Instance&) = delete;

    // Whether a plug-in that requires this feature gets it.
    static bool offers(const std::string& feature);
    // Throws PluginError, naming the features that a plug-in requires and does
    // not get.
    static void requireFeaturesOf(const Lv2Bundle& bundle);

    // The number in a control port, in or out; the audio thread's.
    float& control(const std::string& symbol);
    float& control(std::uint32_t port) { return ports[port].number; }
    std::uint32_t portCount() const noexcept { return static_cast<std::uint32_t>(ports.size()); }
    bool isControlInput(std::uint32_t port) const { return is(port, PortKind::controlIn); }
    bool isControlOutput(std::uint32_t port) const { return is(port, PortKind::controlOut); }
    bool isAudioInput(std::uint32_t port) const { return is(port, PortKind::audioIn); }
    bool isAudioOutput(std::uint32_t port) const { return is(port, PortKind::audioOut); }
    std::size_t audioInputs() const { return count(PortKind::audioIn); }
    std::size_t audioOutputs() const { return count(PortKind::audioOut); }

    // A whole atom for the next run, at the port for control messages or at
    // another. One thread, beside run() as well. What finds no room is lost.
    void send(std::span<const std::byte> atom);
    void send(std::uint32_t port, std::span<const std::byte> atom);
    // The atoms that the last run() has sent.
    const std::vector<std::vector<std::byte>>& received() const noexcept { return notified; }
    // What cycle() has brought, oldest first. One thread, beside cycle() as well.
    std::optional<MessageQueue::Message> takeNotification() { return toHost.take(); }
    // The room in the output's sequences, in bytes.
    void setNotifyRoom(std::uint32_t bytes) { notifyRoom = bytes; }
    // What stands in the input's sequence for the next run, byte for byte.
    std::span<std::byte> messageBytes() noexcept;

    // One cycle; the pointers are one for each audio port.
    void run(float* const* inputs, float* const* outputs, std::uint32_t frames);
    // The same for an audio thread: nothing waits or allocates. What the plug-in
    // sends is to be fetched with takeNotification.
    void cycle(float* const* inputs, float* const* outputs, std::uint32_t frames) noexcept;
    // The plug-in's function alone, on what the last run has left in the ports.
    void runOnly(std::uint32_t frames) { lilv_instance_run(instance, frames); }
    void prepareSequences() noexcept;
    // Afterwards what it has sent can be taken.
    void noteNotifications() noexcept;
    // Deactivates and activates it.
    void restart();

    bool keepsState() const;
    Lv2State save();
    // The plug-in's own answer.
    LV2_State_Status restore(const Lv2State& state);
    void connect(std::uint32_t port, void* data) {
        lilv_instance_connect_port(instance, port, data);
    }

  private:
    enum class PortKind { audioIn, audioOut, controlIn, controlOut, atomIn, atomOut, absent };
    struct Port {
        PortKind kind;
        float number = 0.0F;
        std::vector<std::uint64_t> sequence{}; // of an atom port
    };

    PortKind kindOf(std::uint32_t port) const;
    bool is(std::uint32_t port, PortKind kind) const { return ports[port].kind == kind; }
    std::size_t count(PortKind kind) const;
    void makePorts();
    void connectPorts();
    std::uint32_t roomOf(const LilvPort* port) const;
    const LV2_State_Interface* stateInterface() const;

    const Lv2Bundle& bundle;
    const LV2_URID sequenceType;
    const LV2_URID chunkType;
    std::int32_t largestBlock;
    float rate;
    std::vector<LV2_Options_Option> options;
    LilvInstance* instance = nullptr;
    std::vector<Port> ports;
    std::optional<std::uint32_t> controlPort; // for messages
    MessageQueue toPlugin;
    MessageQueue toHost;
    std::vector<std::vector<std::byte>> notified;
    std::optional<std::uint32_t> notifyRoom; // instead of the buffers' own
};

} // namespace mirelon::hosting
