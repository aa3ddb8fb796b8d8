// What an LV2 instance keeps: its state, and how state, ports and messages agree.
#include "tests/formats/lv2/lv2bundle.h"

#include "formats/lv2/portvalues.h"
#include "presetsystem/chunkimage.h"
#include "processor/core/factorypresets.h"
#include "shell/vst24.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace mirelon::test {
namespace {

using hosting::Lv2Instance;
using hosting::Lv2State;

class Lv2StateTest : public testing::Test {
  protected:
    void run(Lv2Instance& of) {
        float silence[4][16] = {};
        float* const inputs[] = {silence[0], silence[1]};
        float* const outputs[] = {silence[2], silence[3]};
        of.run(inputs, outputs, 16);
    }
    void run() { run(instance); }

    static ChunkImage bankOf(Lv2Instance& of) {
        const Lv2State state = of.save();
        const auto& bytes = state.at(lv2::bankPropertyUri).value;
        ChunkImage bank{};
        EXPECT_EQ(bytes.size(), bank.size());
        std::copy_n(bytes.begin(), std::min(bytes.size(), bank.size()), bank.begin());
        return bank;
    }
    static PresetBank presetsOf(const ChunkImage& image) {
        PresetBank bank;
        copyChunkBank(image, bank);
        return bank;
    }
    // The value of parameter `index` in the current preset.
    static float value(const ChunkImage& image, int index) {
        const auto preset = chunkPresetNo(image);
        EXPECT_TRUE(preset);
        return presetsOf(image)[static_cast<std::size_t>(preset.value_or(0))].value(index);
    }
    float value(int index) { return value(bankOf(instance), index); }

    // A bank that differs from the factory's in every way.
    static ChunkImage anotherBank() {
        Lv2Instance other(lv2Bundle(), 48000.0);
        ChunkImage image = bankOf(other);
        PresetBank bank = presetsOf(image);
        for (std::size_t i = 0; i < bank.size(); ++i) {
            bank[i].setName("other " + std::to_string(i));
            for (int j = 0; j < kNumParams; ++j)
                // Not a value that a port gives back exactly.
                bank[i].setValue(j, 0.1F + 0.05F * static_cast<float>(i) +
                                        0.0123457F * static_cast<float>(j));
        }
        writeChunk(image, fourCharacters("MrLn"), 7, bank);
        return image;
    }
    void sendBank(const ChunkImage& bank) { instance.send(lv2::formBankMessage(lv2Types(), bank)); }
    // The ports as the window writes them with a bank.
    void setPortsTo(const ChunkImage& bank) {
        for (int index = 0; index < kNumParams; ++index)
            instance.control(lv2::portOfParameter(index)) =
                lv2::portValueOf(index, value(bank, index));
    }

    Lv2Instance instance{lv2Bundle(), 48000.0};
};

TEST_F(Lv2StateTest, IsOnePortableChunkOf692Bytes) {
    const Lv2State state = instance.save();
    ASSERT_EQ(state.size(), 1U);
    const auto& [key, property] = *state.begin();
    EXPECT_EQ(key, "http://dravik.example/mirelon#bank");
    EXPECT_EQ(property.type, LV2_ATOM__Chunk);
    EXPECT_EQ(property.value.size(), 692U);
    EXPECT_EQ(property.flags, std::uint32_t{LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE});
}

TEST_F(Lv2StateTest, OfAFreshInstanceHasTheFactoryPresets) {
    const ChunkImage image = bankOf(instance);
    EXPECT_EQ(chunkPresetNo(image), 0);
    const PresetBank bank = presetsOf(image);
    for (std::size_t i = 0; i < bank.size(); ++i) {
        EXPECT_EQ(bank[i].name().data(), factoryPresets[i].name);
        for (int j = 0; j < kNumParams; ++j)
            EXPECT_EQ(bank[i].value(j), factoryPresets[i].values[static_cast<std::size_t>(j)]);
    }
}

TEST_F(Lv2StateTest, ThatIsRestoredIsSavedAgainByteForByte) {
    const ChunkImage other = anotherBank();
    setPortsTo(other);
    EXPECT_EQ(instance.restore(lv2State(bytesOf(other))), LV2_STATE_SUCCESS);
    EXPECT_EQ(bankOf(instance), other);
    run();
    run();
    EXPECT_EQ(bankOf(instance), other);
}

TEST_F(Lv2StateTest, ThatIsRestoredReachesTheWindow) {
    const ChunkImage other = anotherBank();
    setPortsTo(other);
    instance.restore(lv2State(bytesOf(other)));
    run();
    EXPECT_EQ(banksIn(instance.received()), std::vector{other});
    run();
    EXPECT_TRUE(instance.received().empty());
}

TEST_F(Lv2StateTest, WithoutABankChangesNothing) {
    const ChunkImage before = bankOf(instance);
    EXPECT_EQ(instance.restore({}), LV2_STATE_SUCCESS);
    EXPECT_EQ(bankOf(instance), before);
    run();
    EXPECT_TRUE(instance.received().empty());
}

TEST_F(Lv2StateTest, ThatIsNotOursIsRefusedAndChangesNothing) {
    const ChunkImage before = bankOf(instance);
    const std::vector<std::byte> good = bytesOf(anotherBank());
    const auto damaged = [&](std::size_t at) {
        auto bytes = good;
        bytes[at] ^= std::byte{0x40};
        return lv2State(bytes);
    };
    EXPECT_EQ(instance.restore(damaged(0)), LV2_STATE_ERR_UNKNOWN); // magic word
    EXPECT_EQ(instance.restore(damaged(4)), LV2_STATE_ERR_UNKNOWN); // owner
    EXPECT_EQ(instance.restore(damaged(8)), LV2_STATE_ERR_UNKNOWN); // count
    EXPECT_EQ(instance.restore(lv2State(good, LV2_ATOM__String)), LV2_STATE_ERR_BAD_TYPE);
    for (const std::size_t size : {std::size_t{0}, std::size_t{691}, std::size_t{693}}) {
        auto bytes = good;
        bytes.resize(size);
        // Nothing at all is no bank.
        EXPECT_EQ(instance.restore(lv2State(bytes)),
                  size == 0 ? LV2_STATE_SUCCESS : LV2_STATE_ERR_UNKNOWN)
            << size;
    }
    EXPECT_EQ(bankOf(instance), before);
}

TEST_F(Lv2StateTest, OfRandomBytesNeitherCrashesNorChangesAnything) {
    std::minstd_rand random(1);
    const ChunkImage before = bankOf(instance);
    for (int turn = 0; turn < 2000; ++turn) {
        std::vector<std::byte> bytes(random() % 4 == 0 ? 692 : random() % 2000);
        for (std::byte& byte : bytes)
            byte = static_cast<std::byte>(random());
        instance.restore(lv2State(bytes));
    }
    EXPECT_EQ(bankOf(instance), before);
}

// --- Ports and bank ---

TEST_F(Lv2StateTest, HasWhatThePortsSayInTheCurrentPreset) {
    instance.control("gain") = 6.0F;
    run();
    EXPECT_EQ(value(kParamGain), 0.75F);
}

TEST_F(Lv2StateTest, KeepsExactValuesThatThePortsShow) {
    const ChunkImage other = anotherBank();
    instance.restore(lv2State(bytesOf(other)));
    setPortsTo(other);
    for (int i = 0; i < 3; ++i)
        run();
    EXPECT_EQ(bankOf(instance), other);
}

TEST_F(Lv2StateTest, YieldsToPortsThatSaySomethingElseAfterwards) {
    const ChunkImage other = anotherBank();
    setPortsTo(other);
    instance.control("gain") = -6.0F;
    run();
    instance.restore(lv2State(bytesOf(other)));
    run();
    EXPECT_EQ(value(kParamGain), 0.25F);
    EXPECT_EQ(value(kParamWidth), value(other, kParamWidth));
}

TEST_F(Lv2StateTest, TellsTheWindowWhatThePortsHaveMadeOfIt) {
    const ChunkImage other = anotherBank();
    setPortsTo(other);
    instance.control("gain") = -6.0F;
    run();
    instance.restore(lv2State(bytesOf(other)));
    run();
    ASSERT_EQ(banksIn(instance.received()).size(), 1U);
    EXPECT_EQ(value(banksIn(instance.received())[0], kParamGain), 0.25F);
}

TEST_F(Lv2StateTest, OfTheWindowIsNotOverruledByPortsThatStandStill) {
    instance.control("gain") = 6.0F;
    run();
    const ChunkImage other = anotherBank();
    sendBank(other);
    run();
    run();
    EXPECT_EQ(bankOf(instance), other);
}

TEST_F(Lv2StateTest, OfTheWindowComesBeforeOrAfterItsPorts) {
    const ChunkImage other = anotherBank();
    setPortsTo(other);
    run();
    sendBank(other);
    run();
    EXPECT_EQ(bankOf(instance), other);

    const ChunkImage factory = [] {
        Lv2Instance fresh(lv2Bundle(), 48000.0);
        return bankOf(fresh);
    }();
    sendBank(factory);
    run();
    setPortsTo(factory);
    run();
    EXPECT_EQ(bankOf(instance), factory);
}

TEST_F(Lv2StateTest, FollowsAPortThatMovesAfterTheWindowsBank) {
    sendBank(anotherBank());
    run();
    instance.control("balance") = 25.0F;
    run();
    EXPECT_EQ(value(kParamBalance), 0.75F);
}

TEST_F(Lv2StateTest, IsNotChangedByAPortThatIsNoNumber) {
    run();
    const ChunkImage before = bankOf(instance);
    for (std::uint32_t port = 0; port < instance.portCount(); ++port)
        if (instance.isControlInput(port))
            instance.control(port) = std::nanf("");
    run();
    EXPECT_EQ(bankOf(instance), before);
}

// --- Messages ---

TEST_F(Lv2StateTest, IsSentToAWindowThatAsks) {
    run();
    EXPECT_TRUE(instance.received().empty());
    instance.send(lv2::formGetMessage(lv2Types()));
    run();
    EXPECT_EQ(banksIn(instance.received()), std::vector{bankOf(instance)});
    run();
    EXPECT_TRUE(instance.received().empty());
}

TEST_F(Lv2StateTest, WaitsForRoomInTheHostsBuffer) {
    instance.send(lv2::formGetMessage(lv2Types()));
    for (const std::uint32_t room : {0U, 7U, 8U, 700U, 743U}) {
        instance.setNotifyRoom(room);
        run();
        EXPECT_TRUE(instance.received().empty()) << room;
    }
    instance.setNotifyRoom(744);
    run();
    EXPECT_EQ(banksIn(instance.received()).size(), 1U);
}

TEST_F(Lv2StateTest, IsSafeFromBadMessages) {
    std::minstd_rand random(1);
    run();
    const ChunkImage before = bankOf(instance);
    const lv2::BankMessage good = lv2::formBankMessage(lv2Types(), anotherBank());
    for (int turn = 0; turn < 3000; ++turn) {
        std::vector<std::byte> bad(good.begin(), good.end());
        // The head of the message, or of the bank in it.
        const std::size_t at = random() % 2 == 0 ? random() % 16 : 32 + random() % 12;
        bad[at] = static_cast<std::byte>(random());
        if (std::ranges::equal(bad, good))
            continue;
        LV2_Atom header{static_cast<std::uint32_t>(bad.size() - sizeof header), 0};
        if (at < 4) // the host's own copy needs the true size
            std::memcpy(bad.data(), &header.size, 4);
        if (std::ranges::equal(bad, good))
            continue;
        instance.send(bad);
        run();
        // A changed object id is nobody's business: the one damage that counts
        // for nothing.
        if (at >= 8 && at < 12)
            instance.restore(lv2State(bytesOf(before)));
    }
    run();
    EXPECT_EQ(bankOf(instance), before);
}

TEST_F(Lv2StateTest, IsSavedWholeWhileTheWindowSendsBanks) {
    const ChunkImage first = bankOf(instance);
    const ChunkImage second = anotherBank();
    std::atomic<bool> stop{false};
    run();
    std::atomic<int> blocks{0};
    std::thread audio([&] {
        for (; !stop; ++blocks) {
            sendBank(blocks % 2 == 0 ? second : first);
            run();
        }
    });
    int broken = 0;
    while (blocks < 100000) {
        const ChunkImage saved = bankOf(instance);
        broken += saved == first || saved == second ? 0 : 1;
    }
    stop = true;
    audio.join();
    EXPECT_EQ(broken, 0);
}

TEST_F(Lv2StateTest, IsRestoredWhileAudioRuns) {
    const ChunkImage first = bankOf(instance);
    const ChunkImage second = anotherBank();
    std::atomic<bool> stop{false};
    run();
    std::atomic<int> blocks{0};
    std::thread audio([&] {
        for (; !stop; ++blocks) {
            sendBank(first);
            run();
        }
    });
    int refused = 0;
    while (blocks < 4000)
        refused += instance.restore(lv2State(bytesOf(second))) == LV2_STATE_SUCCESS ? 0 : 1;
    stop = true;
    audio.join();
    EXPECT_EQ(refused, 0);
    // The ports, which stand still, count once more after a restored state, so
    // that only the names tell whose bank it is: all of one.
    const auto names = [](const ChunkImage& image) {
        std::vector<std::string> all;
        for (const PresetRecord& record : presetsOf(image))
            all.emplace_back(record.name().data());
        return all;
    };
    const auto saved = names(bankOf(instance));
    EXPECT_TRUE(saved == names(first) || saved == names(second));
}

} // namespace
} // namespace mirelon::test
