// The CLAP plug-in from the file's entry to an instance's end, with hosts that
// have little and know less.
#include "tests/formats/clap/clapfile.h"

#include <array>
#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

namespace mirelon::test {
namespace {

using hosting::ClapExtensions;
using ::testing::ElementsAre;
using ::testing::StrEq;

class ClapLife : public testing::Test {
  protected:
    EmptyPreferences preferences;
};

// --- The file ---

TEST_F(ClapLife, FactoryIsThereFromTheFirstInitToTheLastDeinit) {
    void* const library = dlopen(MIRELON_CLAP_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr);
    const auto* const entry = static_cast<const clap_plugin_entry*>(dlsym(library, "clap_entry"));
    ASSERT_NE(entry, nullptr);
    const auto factory = [entry] { return entry->get_factory(CLAP_PLUGIN_FACTORY_ID); };
    // Another test of this process may have it in use.
    int others = 0;
    for (; factory() != nullptr; ++others)
        entry->deinit();
    EXPECT_TRUE(entry->init(MIRELON_CLAP_FILE));
    EXPECT_TRUE(entry->init(nullptr));
    EXPECT_NE(factory(), nullptr);
    entry->deinit();
    EXPECT_NE(factory(), nullptr);
    entry->deinit();
    EXPECT_EQ(factory(), nullptr);
    entry->deinit(); // once too often
    EXPECT_TRUE(entry->init(MIRELON_CLAP_FILE));
    EXPECT_NE(factory(), nullptr);
    EXPECT_EQ(entry->get_factory("clap.another-factory"), nullptr);
    EXPECT_EQ(entry->get_factory(nullptr), nullptr);
    entry->deinit();
    for (; others > 0; --others)
        entry->init(MIRELON_CLAP_FILE);
    dlclose(library);
}

TEST_F(ClapLife, FileHoldsOnePlugInUnderItsName) {
    EXPECT_THAT(clapLibrary().ids(), ElementsAre("example.dravik.mirelon"));
    const clap_plugin_factory& factory = clapLibrary().factory();
    const auto* const descriptor = factory.get_plugin_descriptor(&factory, 0);
    EXPECT_TRUE(clap_version_is_compatible(descriptor->clap_version));
    EXPECT_STREQ(descriptor->name, "Dravik Mirelon");
    EXPECT_STREQ(descriptor->vendor, "dravik.example");
    std::vector<std::string> features;
    for (const char* const* feature = descriptor->features; *feature != nullptr; ++feature)
        features.emplace_back(*feature);
    EXPECT_THAT(features, testing::IsSupersetOf({"audio-effect", "stereo"}));
    EXPECT_EQ(factory.get_plugin_descriptor(&factory, 1), nullptr);
}

TEST_F(ClapLife, FactoryMakesNothingElse) {
    const clap_plugin_factory& factory = clapLibrary().factory();
    hosting::ClapHost host;
    EXPECT_EQ(factory.create_plugin(&factory, host.record(), "example.dravik.mirelon.other"),
              nullptr);
    EXPECT_EQ(factory.create_plugin(&factory, host.record(), nullptr), nullptr);
}

TEST_F(ClapLife, TwoPlugInsOfOneFactoryAreTwo) {
    ClapPlugIn first;
    ClapPlugIn second;
    first.set(kParamGain, 0.75);
    EXPECT_EQ(first.value(kParamGain), 0.75);
    EXPECT_EQ(second.value(kParamGain), 0.5);
    EXPECT_NE(&first.instance.plugin(), &second.instance.plugin());
}

// --- Hosts that lack something ---

TEST_F(ClapLife, HostWithoutExtensionsIsEnough) {
    ClapPlugIn plugIn(ClapExtensions::none);
    EXPECT_TRUE(plugIn.instance.activate(44100.0, 128));
    plugIn.set(kParamGain, 0.25);
    const auto state = plugIn.instance.save();
    ASSERT_TRUE(state);
    plugIn.set(kParamGain, 0.5);
    EXPECT_TRUE(plugIn.instance.load(*state));
    EXPECT_EQ(plugIn.value(kParamGain), 0.25);
}

TEST_F(ClapLife, HostWithoutAnyFunctionIsEnough) {
    clap_host nothing{};
    nothing.clap_version = CLAP_VERSION;
    const clap_plugin_factory& factory = clapLibrary().factory();
    for (const clap_host* const host :
         {static_cast<const clap_host*>(nullptr), static_cast<const clap_host*>(&nothing)}) {
        const clap_plugin* const made = factory.create_plugin(&factory, host, clapId);
        ASSERT_NE(made, nullptr);
        EXPECT_TRUE(made->init(made));
        const auto& state =
            *static_cast<const clap_plugin_state*>(made->get_extension(made, CLAP_EXT_STATE));
        std::array<std::byte, 692> bytes{};
        const clap_ostream out{
            &bytes, [](const clap_ostream* stream, const void* buffer, std::uint64_t size) {
                std::memcpy(stream->ctx, buffer, size);
                return static_cast<std::int64_t>(size);
            }};
        EXPECT_TRUE(state.save(made, &out));
        made->on_main_thread(made);
        made->destroy(made);
    }
}

// What it may not ask for before init() it does not.
TEST_F(ClapLife, HostIsLeftAloneUntilInit) {
    int questions = 0;
    clap_host host{};
    host.clap_version = CLAP_VERSION;
    host.host_data = &questions;
    host.get_extension = [](const clap_host* self, const char*) -> const void* {
        ++*static_cast<int*>(self->host_data);
        return nullptr;
    };
    host.request_callback = [](const clap_host* self) { ++*static_cast<int*>(self->host_data); };
    const clap_plugin_factory& factory = clapLibrary().factory();
    const clap_plugin* const made = factory.create_plugin(&factory, &host, clapId);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(questions, 0);
    made->init(made);
    EXPECT_GT(questions, 0);
    made->destroy(made);
}

TEST_F(ClapLife, OffersFiveExtensionsAndNoMore) {
    ClapPlugIn plugIn;
    const clap_plugin& made = plugIn.instance.plugin();
    for (const char* id :
         {"clap.audio-ports", "clap.params", "clap.state", "clap.gui", "clap.timer-support"})
        EXPECT_NE(made.get_extension(&made, id), nullptr) << id;
    for (const char* id : {"clap.latency", "clap.tail", "clap.note-ports", "", "clap.PARAMS"})
        EXPECT_EQ(made.get_extension(&made, id), nullptr) << id;
    EXPECT_EQ(made.get_extension(&made, nullptr), nullptr);
}

// --- Activation ---

TEST_F(ClapLife, AnyNumberOfActivationsKeepTheParameters) {
    ClapPlugIn plugIn;
    plugIn.set(kParamWidth, 0.25);
    const auto state = plugIn.instance.save();
    std::array<float, 64> silence{};
    float* const channels[] = {silence.data(), silence.data()};
    for (int i = 0; i < 500; ++i) {
        ASSERT_TRUE(plugIn.instance.activate(i % 2 == 0 ? 44100.0 : 192000.0, 64));
        EXPECT_EQ(plugIn.instance.process(channels, channels, 64), CLAP_PROCESS_CONTINUE);
        if (i % 3 == 0)
            plugIn.instance.deactivate();
    }
    EXPECT_EQ(plugIn.value(kParamWidth), 0.25);
    EXPECT_EQ(plugIn.instance.save(), state);
}

TEST_F(ClapLife, CallsOutOfOrderAreHarmless) {
    ClapPlugIn plugIn;
    const clap_plugin& made = plugIn.instance.plugin();
    std::array<float, 64> silence{};
    float* const channels[] = {silence.data(), silence.data()};
    made.stop_processing(&made);
    made.deactivate(&made);
    EXPECT_EQ(plugIn.instance.process(channels, channels, 64), CLAP_PROCESS_CONTINUE);
    made.reset(&made);
    EXPECT_TRUE(made.activate(&made, 48000.0, 1, 64));
    EXPECT_TRUE(made.activate(&made, 44100.0, 1, 64));
    EXPECT_TRUE(made.start_processing(&made));
    EXPECT_TRUE(made.start_processing(&made));
    EXPECT_EQ(plugIn.instance.process(channels, channels, 64), CLAP_PROCESS_CONTINUE);
    made.deactivate(&made);
    made.deactivate(&made);
}

TEST_F(ClapLife, ActivationRefusesRatesAndBlocksThatAreNone) {
    ClapPlugIn plugIn;
    for (const double rate : {0.0, -48000.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(plugIn.instance.activate(rate, 64)) << rate;
    EXPECT_FALSE(plugIn.instance.activate(48000.0, 0));
    EXPECT_TRUE(plugIn.instance.activate(48000.0, 0xFFFFFFFF));
    EXPECT_TRUE(plugIn.instance.activate(1.0, 64)) << "slow, but a rate";
}

TEST_F(ClapLife, AnInstanceMayEndWhileItIsActive) {
    hosting::ClapHost host;
    const clap_plugin_factory& factory = clapLibrary().factory();
    const clap_plugin* const made = factory.create_plugin(&factory, host.record(), clapId);
    made->init(made);
    made->activate(made, 48000.0, 1, 64);
    made->start_processing(made);
    made->destroy(made);
}

// The interface gives each function its thread; hosts that mistake it get answers.
TEST_F(ClapLife, CallsFromOtherThreadsAreAnswered) {
    ClapPlugIn plugIn;
    plugIn.instance.activate(48000.0, 64);
    std::thread audio([&] {
        std::array<float, 64> silence{};
        float* const channels[] = {silence.data(), silence.data()};
        for (int i = 0; i < 500; ++i)
            plugIn.instance.process(channels, channels, 64);
    });
    std::thread other([&] {
        for (int i = 0; i < 500; ++i) {
            EXPECT_TRUE(plugIn.instance.value(kParamGain));
            EXPECT_TRUE(plugIn.instance.text(kParamGain, 0.5));
            EXPECT_TRUE(plugIn.instance.save());
            plugIn.set(kParamGain, i / 500.0);
            const clap_plugin& made = plugIn.instance.plugin();
            made.on_main_thread(&made);
        }
        const clap_plugin_gui& gui = *plugIn.instance.window();
        const clap_plugin& made = plugIn.instance.plugin();
        EXPECT_FALSE(gui.show(&made));
        gui.destroy(&made);
    });
    audio.join();
    other.join();
    EXPECT_EQ(plugIn.value(kParamGain), static_cast<double>(static_cast<float>(499 / 500.0)));
}

// --- Audio ports ---

TEST_F(ClapLife, PortsAreOneStereoPairThatMayShareItsBuffers) {
    ClapPlugIn plugIn;
    const clap_plugin& made = plugIn.instance.plugin();
    const auto& ports = *plugIn.instance.extension<clap_plugin_audio_ports>(CLAP_EXT_AUDIO_PORTS);
    clap_audio_port_info in{};
    clap_audio_port_info out{};
    ASSERT_EQ(ports.count(&made, true), 1U);
    ASSERT_EQ(ports.count(&made, false), 1U);
    ASSERT_TRUE(ports.get(&made, 0, true, &in));
    ASSERT_TRUE(ports.get(&made, 0, false, &out));
    for (const clap_audio_port_info& port : {in, out}) {
        EXPECT_EQ(port.channel_count, 2U);
        EXPECT_THAT(port.port_type, StrEq("stereo"));
        EXPECT_TRUE(port.flags & CLAP_AUDIO_PORT_IS_MAIN);
        EXPECT_TRUE(port.flags & CLAP_AUDIO_PORT_SUPPORTS_64BITS);
    }
    // Terminated however long a name may become.
    for (const clap_audio_port_info& port : {in, out})
        EXPECT_EQ(port.name[CLAP_NAME_SIZE - 1], '\0');
    EXPECT_EQ(in.in_place_pair, out.id);
    EXPECT_EQ(out.in_place_pair, in.id);
    EXPECT_THAT(in.name, StrEq("Input"));
    EXPECT_THAT(out.name, StrEq("Output"));
    EXPECT_FALSE(ports.get(&made, 1, true, &in));
    EXPECT_FALSE(ports.get(&made, 0, true, nullptr));
}

} // namespace
} // namespace mirelon::test
