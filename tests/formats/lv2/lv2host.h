// Hosting an LV2 plug-in: one bundle, its instances and windows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mirelon::hosting {

// Numbers for URIs, as a host gives them out. Any thread.
class Lv2Numbers {
  public:
    LV2_URID number(const std::string& uri);
    std::string uri(LV2_URID number); // empty for a number that was not given out
    LV2_URID_Map* map() noexcept { return &mapping; }

  private:
    std::mutex access;
    std::map<std::string, LV2_URID> numbers;
    LV2_URID_Map mapping{this, [](LV2_URID_Map_Handle self, const char* uri) {
                             return static_cast<Lv2Numbers*>(self)->number(uri);
                         }};
};

// A bundle in memory, with the LV2 specifications.
class Lv2Bundle {
  public:
    // Throws std::runtime_error when the bundle cannot be read or holds no
    // plug-in of this URI.
    Lv2Bundle(const std::filesystem::path& bundle, const std::string& uri);
    ~Lv2Bundle();
    Lv2Bundle(const Lv2Bundle&) = delete;
    Lv2Bundle& operator=(const Lv2Bundle&) = delete;

    const LilvPlugin* plugin() const noexcept { return found; }
    LilvWorld* world() const noexcept { return all.get(); }
    Lv2Numbers& numbers() const noexcept { return given; }
    std::uint32_t portNumber(const std::string& symbol) const;
    std::filesystem::path windowBinary() const;

    // The labels of the presets, and a preset's numbers by port symbol.
    std::vector<std::string> presets() const;
    std::map<std::string, float> preset(const std::string& label) const;

  private:
    struct Free {
        void operator()(LilvWorld* world) const { lilv_world_free(world); }
    };
    std::unique_ptr<LilvWorld, Free> all;
    const LilvPlugin* found = nullptr;
    mutable Lv2Numbers given;
};

// A property as an instance has stored it.
struct Lv2Property {
    std::vector<std::byte> value;
    std::string type; // a URI
    std::uint32_t flags = 0;
    bool operator==(const Lv2Property&) const = default;
};
using Lv2State = std::map<std::string, Lv2Property>;

enum class Lv2Features { none, all };

// A running instance: activated from construction to destruction. Every port is
// connected; the control ports stand at their defaults.
class Lv2Instance {
  public:
    Lv2Instance(const Lv2Bundle& bundle, double rate, Lv2Features features = Lv2Features::all);
    ~Lv2Instance();
    Lv2Instance(const Lv2Instance&) = delete;
    Lv2Instance& operator=(const Lv2Instance&) = delete;

    // The number in a control port, in or out.
    float& control(const std::string& symbol);
    float& control(std::uint32_t port) { return controls[port]; }
    std::uint32_t portCount() const noexcept { return static_cast<std::uint32_t>(kinds.size()); }
    bool isControlInput(std::uint32_t port) const { return kinds[port] == PortKind::controlIn; }
    bool isControlOutput(std::uint32_t port) const { return kinds[port] == PortKind::controlOut; }

    // A whole atom for the next run.
    void send(std::span<const std::byte> atom);
    // The atoms that the last run has sent.
    const std::vector<std::vector<std::byte>>& received() const noexcept { return notified; }
    // The room in the output's sequence, in bytes.
    void setNotifyRoom(std::uint32_t bytes) { notifyRoom = bytes; }
    // What stands in the input's sequence for the next run, byte for byte.
    std::span<std::byte> messageBytes() noexcept;

    // One cycle; the pointers are one for each audio port.
    void run(float* const* inputs, float* const* outputs, std::uint32_t frames);
    // The plug-in's function alone, on what the last run has left in the ports.
    void runOnly(std::uint32_t frames) { lilv_instance_run(instance, frames); }
    void prepareSequences();

    Lv2State save();
    // The plug-in's own answer.
    LV2_State_Status restore(const Lv2State& state);
    void connect(std::uint32_t port, void* data) {
        lilv_instance_connect_port(instance, port, data);
    }

  private:
    enum class PortKind { audioIn, audioOut, controlIn, controlOut, atomIn, atomOut };
    static constexpr std::uint32_t atomRoom = 8192;

    PortKind kindOf(std::uint32_t port) const;
    void readNotifications();
    const LV2_State_Interface& stateInterface() const;

    const Lv2Bundle& bundle;
    LilvInstance* instance = nullptr;
    std::vector<PortKind> kinds;
    std::vector<float> controls;
    std::vector<std::uint64_t> messages;      // the input's sequence
    std::vector<std::uint64_t> notifications; // the output's
    std::vector<std::vector<std::byte>> waiting;
    std::vector<std::vector<std::byte>> notified;
    std::uint32_t notifyRoom = atomRoom - sizeof(LV2_Atom);
};

// What a window's write to a port was.
struct Lv2Write {
    std::uint32_t port = 0;
    std::optional<float> number;    // of a control port
    std::vector<std::byte> message; // otherwise: a whole atom
};

// A window of the bundle in a parent's, with its binary loaded for as long.
class Lv2Window {
  public:
    struct Options {
        std::uintptr_t parent = 0; // 0: none is given
        bool map = true;
        std::optional<float> scale;
    };
    // Throws std::runtime_error when the binary cannot be loaded; the window may
    // refuse to open.
    Lv2Window(const Lv2Bundle& bundle, const Options& options);
    ~Lv2Window();
    Lv2Window(const Lv2Window&) = delete;
    Lv2Window& operator=(const Lv2Window&) = delete;

    bool isOpen() const noexcept { return handle != nullptr; }
    // The child's X11 window.
    std::uint32_t child() const noexcept;
    void tell(std::uint32_t port, float number);
    void tell(std::uint32_t port, std::span<const std::byte> atom);
    void tellRaw(std::uint32_t port, std::uint32_t size, std::uint32_t format, const void* bytes);
    int idle();
    // As the destructor; what the window writes meanwhile is noted.
    void close();

    std::vector<Lv2Write> writes;           // so far, oldest first
    std::string touches;                    // "b6e6": port 6 grabbed and released
    std::vector<std::pair<int, int>> sizes; // that the window has asked for
    std::function<void(const Lv2Write&)> onWrite;

  private:
    void note(std::uint32_t port, std::uint32_t size, std::uint32_t protocol, const void* buffer);

    struct Unload {
        void operator()(void* library) const;
    };
    Lv2Numbers& numbers;
    std::unique_ptr<void, Unload> library;
    const LV2UI_Descriptor* descriptor = nullptr;
    const LV2UI_Idle_Interface* idling = nullptr;
    LV2UI_Handle handle = nullptr;
    LV2UI_Widget widget = nullptr;
    LV2UI_Touch touching{};
    LV2UI_Resize resizing{};
};

} // namespace mirelon::hosting
