// The CLAP plug-in's state.
#include "hosting/clapstreams.h"
#include "tests/formats/clap/clapfile.h"
#include "tests/support/plugin.h"

#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using Bytes = std::vector<std::byte>;

class ClapState : public testing::Test {
  protected:
    Bytes saved() const { return plugIn.instance.save().value(); }

    EmptyPreferences preferences;
    ClapPlugIn plugIn;
};

TEST_F(ClapState, IsTheChunkOfTheOtherFormats) {
    PluginInstance vst;
    plugIn.set(kParamGain, 0.75);
    vst.effect.setParameter(kParamGain, 0.75F);
    EXPECT_EQ(saved(), vst.effect.chunk());
    EXPECT_EQ(saved().size(), 692U);
    EXPECT_TRUE(plugIn.instance.load(vst.effect.chunk()));
}

TEST_F(ClapState, GoesThroughStreamsOfAnyStep) {
    plugIn.set(kParamWidth, 0.125);
    const Bytes whole = saved();
    for (const std::size_t step : {1U, 2U, 7U, 100U, 691U, 692U, 693U}) {
        EXPECT_EQ(plugIn.instance.save(step), whole);
        plugIn.set(kParamWidth, 0.5);
        EXPECT_TRUE(plugIn.instance.load(whole, step));
        EXPECT_EQ(plugIn.value(kParamWidth), 0.125);
    }
}

TEST_F(ClapState, FailsWhenTheStreamDoes) {
    const clap_plugin& made = plugIn.instance.plugin();
    const auto& state = *plugIn.instance.extension<clap_plugin_state>(CLAP_EXT_STATE);
    for (const std::size_t room : {0U, 1U, 691U}) {
        hosting::ClapOutputStream stream(50, room);
        EXPECT_FALSE(state.save(&made, stream.stream())) << room;
    }
    EXPECT_FALSE(state.save(&made, nullptr));
    EXPECT_FALSE(state.load(&made, nullptr));
    const clap_ostream stuck{
        nullptr, [](const clap_ostream*, const void*, std::uint64_t) { return std::int64_t{0}; }};
    EXPECT_FALSE(state.save(&made, &stuck));
    const clap_ostream tooMuch{nullptr, [](const clap_ostream*, const void*, std::uint64_t size) {
                                   return static_cast<std::int64_t>(size) + 1;
                               }};
    EXPECT_FALSE(state.save(&made, &tooMuch));
    const clap_istream broken{
        nullptr, [](const clap_istream*, void*, std::uint64_t) { return std::int64_t{-1}; }};
    EXPECT_FALSE(state.load(&made, &broken));
}

TEST_F(ClapState, OfAnotherKindChangesNothing) {
    plugIn.set(kParamGain, 0.75);
    const Bytes before = saved();
    const auto refuses = [&](Bytes bytes) {
        EXPECT_FALSE(plugIn.instance.load(bytes));
        EXPECT_EQ(saved(), before);
    };
    ClapPlugIn other;
    Bytes good = other.instance.save().value();
    refuses({});
    refuses(Bytes(good.begin(), good.end() - 1));
    Bytes longer = good;
    longer.push_back(std::byte{0});
    refuses(longer);
    refuses(Bytes(692));
    for (std::size_t i = 0; i < 4; ++i) { // the magic word
        Bytes wrong = good;
        wrong[i] ^= std::byte{0x55};
        refuses(wrong);
    }
}

TEST_F(ClapState, ThatIsLoadedLetsTheHostLookAtTheValuesAgain) {
    const Bytes state = saved();
    plugIn.set(kParamGain, 0.75);
    EXPECT_EQ(plugIn.host.rescans(), 0);
    EXPECT_TRUE(plugIn.instance.load(state));
    EXPECT_EQ(plugIn.host.rescans(), 1);
    EXPECT_EQ(plugIn.host.dirtyMarks(), 0); // it is what the host has
    EXPECT_FALSE(plugIn.instance.load(Bytes(692)));
    plugIn.instance.serve();
    EXPECT_EQ(plugIn.host.rescans(), 1);
}

// Hosts set every parameter once more after a load, as they have read them.
TEST_F(ClapState, StaysExactWhenTheHostGivesTheValuesBack) {
    plugIn.set(kParamGain, 0.123456789);
    plugIn.set(kParamPhase, 1.0);
    Bytes odd = saved();
    ClapPlugIn other;
    EXPECT_TRUE(other.instance.load(odd));
    for (int index = 0; index < kNumParams; ++index)
        other.set(index, other.value(index));
    EXPECT_EQ(other.instance.save(), odd);
}

} // namespace
} // namespace mirelon::test
