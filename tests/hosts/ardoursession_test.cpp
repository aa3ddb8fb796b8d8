// The plug-in in an Ardour session without a window.
#include "tests/hosts/ardour.h"
#include "tests/hosts/ardoursession.h"
#include "tests/hosts/observations.h"
#include "tests/hosts/presetnames.h"
#include "tests/support/referenceprocessor.h"
#include "tests/support/signals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>
#include <utility>

namespace mirelon::test {
namespace {

using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

constexpr std::size_t seconds = 3;
constexpr std::size_t frames = seconds * ArdourSession::rate;

constexpr std::size_t bounceBlock = 8192; // the largest that Ardour uses
constexpr int kGain = 1;
constexpr int kSwap = 6;
using Parameters = std::array<float, 9>;

// "<index>=<value>", as the scripts take it.
std::string assignment(std::size_t index, float value) {
    char text[48];
    std::snprintf(text, sizeof text, "%zu=%.9g", index, static_cast<double>(value));
    return text;
}

std::map<int, float> numbered(const Parameters& values) {
    std::map<int, float> map;
    for (int i = 0; i < 9; ++i)
        map[i] = values[static_cast<std::size_t>(i)];
    return map;
}

Stereo referenceOf(const Stereo& input, const Parameters& values) {
    reference::ReferenceProcessor processor;
    processor.setSampleRate(ArdourSession::rate);
    for (int i = 0; i < 9; ++i)
        processor.setParameter(i, values[static_cast<std::size_t>(i)]);
    Stereo output = input;
    processor.process(input.left.data(), input.right.data(), output.left.data(),
                      output.right.data(), static_cast<int>(input.left.size()));
    return output;
}

// The first frame at which two recordings are not bit for bit the same; empty
// text when there is none.
std::string difference(const Stereo& a, const Stereo& b) {
    if (a.left.size() != b.left.size() || a.right.size() != b.right.size())
        return "of different length";
    for (std::size_t i = 0; i < a.left.size(); ++i)
        if (!signals::sameBits(a.left[i], b.left[i]) || !signals::sameBits(a.right[i], b.right[i]))
            return std::string("frame ").append(std::to_string(i));
    return {};
}

class ArdourSessionTest : public ::testing::Test {
  protected:
    void SetUp() override { SKIP_WITHOUT_ARDOUR(); }

    void scan(const HostHome& home) const {
        ASSERT_THAT(ardour::scan(home).output, ::testing::HasSubstr("<VST2Info "));
    }

    // A session of this home with the plug-in on its track.
    static ArdourSession sessionWith(const HostHome& home, const Parameters& values) {
        const ArdourSession session(home / "session");
        std::vector<std::string> arguments{session.path(), std::to_string(ArdourSession::rate)};
        for (std::size_t i = 0; i < values.size(); ++i)
            arguments.push_back(assignment(i, values[i]));
        ardour::runScript(home, "insert.lua", arguments);
        session.putOnTrack(input());
        return session;
    }

    static std::string bounce(const HostHome& home, const ArdourSession& session,
                              const std::string& name) {
        return ardour::runScript(home, "bounce.lua",
                                 {session.path(), std::to_string(frames), name});
    }

    static const Stereo& input() {
        static const Stereo audio = material(frames);
        return audio;
    }
};

struct Setting {
    const char* name;
    Parameters values;
};

void PrintTo(const Setting& setting, std::ostream* stream) {
    *stream << setting.name;
}

class ArdourBounce : public ArdourSessionTest, public ::testing::WithParamInterface<Setting> {};

TEST_P(ArdourBounce, IsTheReferenceBitForBit) {
    const HostHome home(MIRELON_PLUGIN_FILE);
    scan(home);
    const ArdourSession session = sessionWith(home, GetParam().values);
    const std::string report = bounce(home, session, "bounce");
    EXPECT_EQ(ardour::parametersIn(report), numbered(GetParam().values));
    const Stereo bounced = session.bounced("bounce");
    EXPECT_EQ(difference(bounced, referenceOf(input(), GetParam().values)), "");
}

INSTANTIATE_TEST_SUITE_P(
    Settings, ArdourBounce,
    ::testing::Values(Setting{"middle", {0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F}},
                      Setting{"everythingMoved",
                              {0.71F, 0.43F, 0.62F, 0.31F, 0.77F, 1.0F, 1.0F, 0.0F, 1.0F}},
                      Setting{"bypassed", {0.9F, 0.9F, 0.1F, 0.2F, 0.3F, 0.0F, 1.0F, 1.0F, 0.0F}}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(ArdourSessionTest, ReloadedInANewProcessHasParametersAndPresetNamesBack) {
    const HostHome home(MIRELON_PLUGIN_FILE);
    scan(home);
    const Parameters values{0.71F, 0.43F, 0.62F, 0.31F, 0.77F, 1.0F, 1.0F, 0.0F, 1.0F};
    const ArdourSession session = sessionWith(home, values);
    const std::vector<std::byte> chunk = withRenamedPresets(session.chunk());
    session.setChunk(chunk);

    // Each of these is a process of its own that loads, bounces and saves.
    const std::string first = bounce(home, session, "first");
    EXPECT_EQ(ardour::parametersIn(first), numbered(values));
    EXPECT_EQ(session.chunk(), chunk);
    const std::string second = bounce(home, session, "second");
    EXPECT_EQ(ardour::parametersIn(second), numbered(values));
    EXPECT_EQ(session.chunk(), chunk);
    EXPECT_EQ(difference(session.bounced("first"), session.bounced("second")), "");
    EXPECT_EQ(difference(session.bounced("first"), referenceOf(input(), values)), "");
}

// The frame of the bounce at which the host made each of its changes to one
// parameter, and the value.
std::vector<std::pair<std::size_t, float>> changesOf(int parameter,
                                                     const Observations& observations) {
    std::vector<std::pair<std::size_t, float>> changes;
    std::size_t position = 0;
    for (const Observation& call : observations) {
        if (call.thread != "main")
            continue;
        if (call.kind == Observation::Kind::sets && call.index == parameter)
            changes.emplace_back(position, call.opt);
        if (call.kind == Observation::Kind::plays)
            position += static_cast<std::size_t>(call.value);
    }
    return changes;
}

// Plays what the host asked for while bouncing, which it does on its main thread,
// again on the reference. `kept` is what the chunk says.
Stereo replayed(const Observations& observations, const Stereo& input, const Parameters& kept) {
    reference::ReferenceProcessor processor;
    processor.setSampleRate(ArdourSession::rate);
    Stereo output;
    for (const Observation& call : observations) {
        const std::size_t position = output.left.size();
        if (call.is(Observation::Kind::asks, effSetChunk))
            for (int i = 0; i < 9; ++i)
                processor.setParameter(i, kept[static_cast<std::size_t>(i)]);
        if (call.kind == Observation::Kind::sets)
            processor.setParameter(call.index, call.opt);
        if (call.kind != Observation::Kind::plays || call.thread != "main")
            continue;
        const std::size_t end =
            std::min(position + static_cast<std::size_t>(call.value), input.left.size());
        output.left.resize(end);
        output.right.resize(end);
        processor.process(input.left.data() + position, input.right.data() + position,
                          output.left.data() + position, output.right.data() + position,
                          static_cast<int>(end - position));
    }
    return output;
}

TEST_F(ArdourSessionTest, AutomationIsHeardAsTheHostPlaysItBack) {
    HostHome home(observer());
    home.addEnvironment(observing(home / "observations"));
    scan(home);
    const Parameters values{0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F};
    const ArdourSession session = sessionWith(home, values);
    // The channels swapped for a while, and a rising gain.
    ardour::automate(home, session.path(), {kSwap, {"0=0", "48000=1", "60000=0"}});
    ardour::automate(home, session.path(), {kGain, {"0=0.5", "96000=0.75"}});

    std::filesystem::remove(home / "observations");
    bounce(home, session, "automated");
    const Observations observations = observationsIn(home / "observations");
    const auto swaps = changesOf(kSwap, observations);
    // Ardour splits its block at a point, or takes the next block's start.
    ASSERT_EQ(swaps.size(), 2U);
    EXPECT_EQ(swaps[0].second, 1.0F);
    EXPECT_THAT(swaps[0].first, AllOf(Ge(48000U), Le(48000U + bounceBlock)));
    EXPECT_EQ(swaps[1].second, 0.0F);
    EXPECT_THAT(swaps[1].first, AllOf(Ge(60000U), Le(60000U + bounceBlock)));
    std::set<float> gains;
    for (const auto& [frame, gain] : changesOf(kGain, observations))
        gains.insert(gain);
    EXPECT_GT(gains.size(), 5U) << "the ramp arrived in too few steps";
    EXPECT_EQ(*gains.rbegin(), 0.75F);
    const Stereo bounced = session.bounced("automated");
    EXPECT_EQ(difference(bounced, replayed(observations, input(), values)), "");
}

} // namespace
} // namespace mirelon::test
