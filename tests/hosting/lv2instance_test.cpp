#include "hosting/lv2instance.h"

#include "hosting/hostingerror.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>

namespace mirelon::hosting {
namespace {

struct Message {
    LV2_Atom atom;
    std::int64_t number;
};

// The numbers that the amplifier has sent in its last run.
std::vector<std::int64_t> numbersFrom(const Lv2Instance& instance) {
    std::vector<std::int64_t> numbers;
    for (const auto& bytes : instance.received()) {
        Message message{};
        if (bytes.size() == sizeof message)
            std::memcpy(&message, bytes.data(), sizeof message);
        numbers.push_back(message.number);
    }
    return numbers;
}

TEST(Lv2Instance, IsSentMessagesAtThePortThatIsMadeForThem) {
    const auto bundle = Lv2Bundle::inFolder(MIRELON_TEST_AMPLIFIER);
    Lv2Instance instance(*bundle, 48000.0);
    std::array<float, 8> in{};
    std::array<float, 8> out{};
    float* inputs[] = {in.data()};
    float* outputs[] = {out.data()};
    const Message message{{sizeof(std::int64_t), 1}, 7};
    instance.send(std::as_bytes(std::span(&message, 1)));
    instance.run(inputs, outputs, 8);
    EXPECT_EQ(numbersFrom(instance), (std::vector<std::int64_t>{42, 7})) << "its own, and ours";
    instance.run(inputs, outputs, 8);
    EXPECT_EQ(numbersFrom(instance), std::vector<std::int64_t>{});
}

TEST(Lv2Instance, ThatThePlugInDoesNotMakeIsToldWithThePlugInsName) {
    const auto bundle = Lv2Bundle::inFolder(MIRELON_TEST_AMPLIFIER);
    try {
        const Lv2Instance instance(*bundle, 48000.0, Lv2Features::none);
        FAIL() << "it has been made";
    } catch (const PluginError& error) {
        EXPECT_STREQ(error.what(), "urn:mirelon:test:amplifier: the plug-in made no instance");
    }
}

TEST(Lv2Instance, HasNoControlOfAPortThatThereIsNot) {
    const auto bundle = Lv2Bundle::inFolder(MIRELON_TEST_AMPLIFIER);
    Lv2Instance instance(*bundle, 48000.0);
    EXPECT_THROW(instance.control("nosuchport"), PluginError);
}

} // namespace
} // namespace mirelon::hosting
