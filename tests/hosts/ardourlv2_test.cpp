// The LV2 plug-in in an Ardour session without a window.
#include "formats/lv2/names.h"
#include "formats/lv2/portvalues.h"
#include "tests/hosts/ardour.h"
#include "tests/hosts/ardoursession.h"
#include "tests/hosts/lv2bundles.h"
#include "tests/hosts/presetnames.h"
#include "tests/support/referenceprocessor.h"
#include "tests/support/signals.h"

#include <array>
#include <chrono>
#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace mirelon::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t frames = std::size_t{3} * ArdourSession::rate;
using PortNumbers = std::array<float, kNumParams>;

constexpr PortNumbers everythingMoved{201.5F, -1.75F, 12.5F, -19.0F, 27.0F, 1.0F, 1.0F, 0.0F, 1.0F};

std::string assignment(int index, float value) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%d=%.9g", index, static_cast<double>(value));
    return text.data();
}

Stereo referenceOf(const Stereo& input, const PortNumbers& numbers) {
    reference::ReferenceProcessor processor;
    processor.setSampleRate(ArdourSession::rate);
    for (int i = 0; i < kNumParams; ++i)
        processor.setParameter(i,
                               lv2::valueOfPort(i, numbers[static_cast<std::size_t>(i)]).value());
    Stereo output = input;
    processor.process(input.left.data(), input.right.data(), output.left.data(),
                      output.right.data(), static_cast<int>(input.left.size()));
    return output;
}

std::string difference(const Stereo& a, const Stereo& b, std::size_t from, std::size_t to) {
    if (a.left.size() < to || b.left.size() < to)
        return "too short";
    for (std::size_t i = from; i < to; ++i)
        if (!signals::sameBits(a.left[i], b.left[i]) || !signals::sameBits(a.right[i], b.right[i]))
            return std::string("frame ").append(std::to_string(i));
    return {};
}

std::string difference(const Stereo& a, const Stereo& b) {
    return difference(a, b, 0, frames);
}

class ArdourLv2 : public ::testing::Test {
  protected:
    void SetUp() override {
        SKIP_WITHOUT_ARDOUR();
        home.addEnvironment(lv2Environment(home / "lv2"));
    }

    // A session with the plug-in on its track.
    void insert(const PortNumbers& numbers) {
        std::vector<std::string> arguments{session.path(), std::to_string(ArdourSession::rate),
                                           std::string("lv2=") + lv2::pluginUri};
        for (int i = 0; i < kNumParams; ++i)
            arguments.push_back(assignment(i, numbers[static_cast<std::size_t>(i)]));
        ardour::runScript(home, "insert.lua", arguments);
        session.putOnTrack(input());
    }

    // In a process of its own, which loads, bounces and saves; gives the ports.
    PortNumbers bounce(const std::string& name) {
        const auto report = ardour::parametersIn(
            ardour::runScript(home, "bounce.lua", {session.path(), std::to_string(frames), name}));
        PortNumbers numbers{};
        for (const auto& [index, value] : report)
            numbers.at(static_cast<std::size_t>(index)) = value;
        return numbers;
    }

    // The newest file with the plug-in's state.
    fs::path stateFile() const {
        fs::path newest;
        for (const auto& entry : fs::recursive_directory_iterator(home / "session/plugins"))
            if (entry.path().filename() == "state.ttl" &&
                (newest.empty() || fs::last_write_time(entry) > fs::last_write_time(newest)))
                newest = entry.path();
        return newest;
    }

    // Where the bank stands in the text of such a file.
    static std::pair<std::size_t, std::size_t> bankIn(const std::string& text) {
        constexpr std::string_view quotes = "\"\"\"";
        const auto end = text.find("\"\"\"^^xsd:base64Binary");
        const auto begin = text.rfind(quotes, end - 1) + quotes.size();
        EXPECT_NE(end, std::string::npos) << text;
        return {begin, end - begin};
    }
    std::vector<std::byte> savedBank() const {
        const std::string text = contentsOf(stateFile());
        const auto [begin, length] = bankIn(text);
        gsize size = 0;
        guchar* const bytes = g_base64_decode(text.substr(begin, length).c_str(), &size);
        const auto* const first = reinterpret_cast<const std::byte*>(bytes);
        std::vector<std::byte> bank(first, first + size);
        g_free(bytes);
        return bank;
    }
    void replaceBank(const std::vector<std::byte>& bank) const {
        std::string text = contentsOf(stateFile());
        const auto [begin, length] = bankIn(text);
        gchar* const encoded =
            g_base64_encode(reinterpret_cast<const guchar*>(bank.data()), bank.size());
        text.replace(begin, length, encoded);
        g_free(encoded);
        writeFile(stateFile(), text);
    }

    static const Stereo& input() {
        static const Stereo audio = material(frames);
        return audio;
    }

    HostHome home{MIRELON_PLUGIN_FILE};
    ArdourSession session{home / "session"};
};

TEST_F(ArdourLv2, BouncesTheReferenceBitForBit) {
    insert(everythingMoved);
    EXPECT_EQ(bounce("bounce"), everythingMoved);
    EXPECT_EQ(difference(session.bounced("bounce"), referenceOf(input(), everythingMoved)), "");
}

TEST_F(ArdourLv2, ReloadedInANewProcessHasParametersAndPresetNamesBack) {
    insert(everythingMoved);
    const std::vector<std::byte> bank = withRenamedPresets(savedBank());
    replaceBank(bank);

    // The first block brings the ports into the current preset.
    EXPECT_EQ(bounce("first"), everythingMoved);
    EXPECT_EQ(presetNames(savedBank()), presetNames(bank));
    const std::vector<std::byte> played = savedBank();
    EXPECT_EQ(bounce("second"), everythingMoved);
    EXPECT_EQ(savedBank(), played);
    EXPECT_EQ(difference(session.bounced("first"), session.bounced("second")), "");
    EXPECT_EQ(difference(session.bounced("first"), referenceOf(input(), everythingMoved)), "");
}

TEST_F(ArdourLv2, KeepsTheBytesThatTheVst2PlugInKeepsAtTheSameSettings) {
    insert(everythingMoved);
    bounce("bounce");
    const std::vector<std::byte> bank = savedBank();

    const ArdourSession other{home / "vst2"};
    std::vector<std::string> arguments{other.path(), std::to_string(ArdourSession::rate)};
    for (int i = 0; i < kNumParams; ++i)
        arguments.push_back(assignment(
            i, lv2::valueOfPort(i, everythingMoved[static_cast<std::size_t>(i)]).value()));
    ASSERT_THAT(ardour::scan(home).output, ::testing::HasSubstr("<VST2Info "));
    ardour::runScript(home, "insert.lua", arguments);
    const std::vector<std::byte> chunk = other.chunk();
    EXPECT_EQ(chunk.size(), 692U);
    EXPECT_EQ(bank, chunk);

    const auto shown = [this](const std::vector<std::byte>& state) {
        const fs::path file = home / "state";
        writeFile(file, {reinterpret_cast<const char*>(state.data()), state.size()});
        const Outcome outcome =
            home.run({MIRELON_HOST_PROGRAM, "chunk", "show", "--plugin", home.plugin(), file},
                     std::chrono::seconds(20));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
        return outcome.output;
    };
    EXPECT_EQ(shown(bank), shown(chunk));
    EXPECT_THAT(shown(bank), ::testing::HasSubstr("692 bytes, a bank of 11 presets"));
}

TEST_F(ArdourLv2, BypassedByTheHostsButtonLeavesTheInputAlone) {
    insert(everythingMoved);
    ardour::runScript(home, "bypass.lua", {session.path()});
    bounce("bypassed");
    EXPECT_EQ(difference(session.bounced("bypassed"), input()), "");
}

TEST_F(ArdourLv2, AutomationIsHeardFromItsPointOn) {
    const PortNumbers middle{100.0F, 0.0F, 0.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F, 0.0F};
    insert(middle);
    // The channels swapped from one second on.
    ardour::automate(home, session.path(),
                     {kParamPhase, {"0=0", "48000=1"}, lv2::portOfParameter(kParamPhase)});
    bounce("automated");
    PortNumbers swapped = middle;
    swapped[kParamPhase] = 1.0F;
    const Stereo bounced = session.bounced("automated");
    constexpr std::size_t block = 8192; // the largest that Ardour uses
    EXPECT_EQ(difference(bounced, referenceOf(input(), middle), 0, 48000), "");
    EXPECT_EQ(difference(bounced, referenceOf(input(), swapped), 48000 + block, frames), "");
}

} // namespace
} // namespace mirelon::test
