// Audio through the built .so, compared bit for bit with an independent
// calculation.
#include "tests/support/plugin.h"
#include "tests/support/referenceprocessor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

namespace {

using mirelon::reference::ReferenceProcessor;
using mirelon::test::PluginInstance;
using mirelon::test::processed;
using mirelon::test::StereoBuffer;

template <typename Sample>
auto bits(const std::vector<Sample>& samples) {
    using Bits = std::conditional_t<sizeof(Sample) == 4, std::uint32_t, std::uint64_t>;
    std::vector<Bits> result(samples.size());
    std::ranges::transform(samples, result.begin(),
                           [](Sample sample) { return std::bit_cast<Bits>(sample); });
    return result;
}

template <typename Sample>
class AudioThroughThePlugin : public testing::Test {
  protected:
    StereoBuffer<Sample> noise(std::size_t frames) {
        StereoBuffer<Sample> buffer(frames);
        std::uniform_real_distribution<Sample> level(-1, 1);
        for (std::size_t i = 0; i < frames; ++i) {
            buffer.left[i] = level(random);
            buffer.right[i] = level(random);
        }
        return buffer;
    }

    StereoBuffer<Sample> expected(const StereoBuffer<Sample>& in) {
        StereoBuffer<Sample> out(in.left.size());
        reference.process(in.left.data(), in.right.data(), out.left.data(), out.right.data(),
                          in.frames());
        return out;
    }

    void setParameter(VstInt32 index, float value) {
        plugin.effect.setParameter(index, value);
        reference.setParameter(index, value);
    }

    std::mt19937 random{20260101};
    PluginInstance plugin;
    ReferenceProcessor reference;
};

using Precisions = testing::Types<float, double>;
TYPED_TEST_SUITE(AudioThroughThePlugin, Precisions);

} // namespace

TYPED_TEST(AudioThroughThePlugin, IsTheReferenceBitForBitInBlocksOfAnySize) {
    this->plugin.effect.resume();
    this->reference.resume();
    std::uniform_real_distribution<float> value(0.0F, 1.0F);
    for (const std::size_t frames : {1U, 2U, 3U, 7U, 64U, 511U, 4096U, 1U, 512U}) {
        for (VstInt32 index = 0; index < 9; ++index)
            if (index != 5)
                this->setParameter(index, value(this->random));
        const auto in = this->noise(frames);
        const auto out = processed(this->plugin.effect, in);
        const auto wanted = this->expected(in);
        ASSERT_EQ(bits(out.left), bits(wanted.left)) << frames;
        ASSERT_EQ(bits(out.right), bits(wanted.right)) << frames;
    }
}

TYPED_TEST(AudioThroughThePlugin, IsTheSameInPlaceAndCrossedInPlace) {
    this->plugin.effect.resume();
    this->setParameter(0, 0.8F);
    this->setParameter(3, 0.3F);
    const auto in = this->noise(333);
    const auto wanted = this->expected(in);
    auto buffer = in;
    this->plugin.effect.process(buffer.pointers(), buffer.pointers(), buffer.frames());
    EXPECT_EQ(bits(buffer.left), bits(wanted.left));
    EXPECT_EQ(bits(buffer.right), bits(wanted.right));

    auto crossed = in;
    TypeParam* outputs[2] = {crossed.right.data(), crossed.left.data()};
    this->plugin.effect.process(crossed.pointers(), outputs, crossed.frames());
    EXPECT_EQ(bits(crossed.right), bits(wanted.left));
    EXPECT_EQ(bits(crossed.left), bits(wanted.right));
}

TYPED_TEST(AudioThroughThePlugin, PassesUntouchedWithProcessOffWhateverElseIsSet) {
    this->plugin.effect.resume();
    for (const VstInt32 index : {0, 1, 2, 3, 4, 6, 7, 8})
        this->plugin.effect.setParameter(index, 1.0F);
    this->plugin.effect.setParameter(5, 0.0F);
    const auto in = this->noise(100);
    const auto out = processed(this->plugin.effect, in);
    EXPECT_EQ(bits(out.left), bits(in.left));
    EXPECT_EQ(bits(out.right), bits(in.right));
}

TYPED_TEST(AudioThroughThePlugin, IsTheIdentityAtTheDefaultsForExactSums) {
    this->plugin.effect.resume();
    StereoBuffer<TypeParam> in(257);
    for (std::size_t i = 0; i < 257; ++i) {
        in.left[i] = static_cast<TypeParam>(static_cast<int>(i) - 128) / 128;
        in.right[i] = static_cast<TypeParam>(static_cast<int>(i * 37 % 257) - 128) / 128;
    }
    const auto out = processed(this->plugin.effect, in);
    EXPECT_EQ(out.left, in.left);
    EXPECT_EQ(out.right, in.right);
}

TYPED_TEST(AudioThroughThePlugin, IsRestoredByInvertingOrSwappingTwice) {
    this->plugin.effect.resume();
    StereoBuffer<TypeParam> in({0.5, -0.25, 1.0}, {0.125, 0.75, -1.0});
    for (const VstInt32 index : {6, 7, 8}) {
        this->plugin.effect.setParameter(index, 1.0F);
        auto once = processed(this->plugin.effect, in);
        EXPECT_NE(once.left == in.left && once.right == in.right, true) << index;
        const auto twice = processed(this->plugin.effect, once);
        EXPECT_EQ(twice.left, in.left) << index;
        EXPECT_EQ(twice.right, in.right) << index;
        this->plugin.effect.setParameter(index, 0.0F);
    }
}

TYPED_TEST(AudioThroughThePlugin, IsTheMidOnBothSidesAtWidthZero) {
    this->plugin.effect.resume();
    this->plugin.effect.setParameter(0, 0.0F);
    StereoBuffer<TypeParam> in({0.5, -0.25}, {0.25, 0.75});
    const auto out = processed(this->plugin.effect, in);
    EXPECT_EQ(out.left, (std::vector<TypeParam>{0.375, 0.25}));
    EXPECT_EQ(out.right, out.left);
}

TYPED_TEST(AudioThroughThePlugin, StaysFiniteAfterNonsenseSamples) {
    this->plugin.effect.resume();
    StereoBuffer<TypeParam> in({NAN, 0.5}, {INFINITY, 0.25});
    const auto out = processed(this->plugin.effect, in);
    EXPECT_TRUE(std::isnan(out.left[0]));
    EXPECT_EQ(out.left[1], static_cast<TypeParam>(0.5));
    EXPECT_EQ(out.right[1], static_cast<TypeParam>(0.25));
}

TEST(AccumulatingProcess, LeavesTheOutputsAsTheyWere) {
    PluginInstance plugin;
    plugin.effect.resume();
    StereoBuffer<float> input({0.5F, -0.5F}, {0.25F, 1.0F});
    StereoBuffer<float> output({0.125F, 0.75F}, {-0.125F, -0.75F});
    AEffect* record = &plugin.effect.record();
    record->process(record, input.pointers(), output.pointers(), output.frames());
    EXPECT_THAT(output.left, testing::ElementsAre(0.125F, 0.75F));
    EXPECT_THAT(output.right, testing::ElementsAre(-0.125F, -0.75F));
}
