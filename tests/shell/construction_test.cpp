// Instances whose construction fails: memory runs out at each of the
// allocations that it makes in turn.
#include "shell/audioeffect.h"
#include "tests/support/allocations.h"
#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <vector>

extern "C" AEffect* VSTPluginMain(audioMasterCallback audioMaster);
extern "C" AEffect* main_macho(audioMasterCallback audioMaster);

using mirelon::test::AtAllocation;
using mirelon::test::blocksInUse;

namespace {

VstIntPtr host(AEffect* /*effect*/, VstInt32 opcode, VstInt32 /*index*/, VstIntPtr /*value*/,
               void* /*ptr*/, float /*opt*/) {
    return opcode == audioMasterVersion ? kVstVersion : 0;
}

void close(AEffect* effect) {
    effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F);
}

struct Attempt {
    bool allocationFailed = false; // otherwise construction made fewer
    bool threw = false;
    bool made = false;
    long blocksLeft = 0; // in use when all is closed again
};

// One construction during which the allocation of this number fails, counted
// from 1; an instance that comes of it all the same is closed.
template <typename Build>
Attempt attempt(Build build, long failing) {
    Attempt result;
    const long before = blocksInUse();
    AEffect* effect = nullptr;
    {
        const AtAllocation outOfMemory(failing, [](void*) { throw std::bad_alloc(); });
        try {
            effect = build();
        } catch (const std::bad_alloc&) {
            result.threw = true;
        }
        result.allocationFailed = outOfMemory.reached();
    }
    result.made = effect != nullptr;
    if (effect != nullptr)
        close(effect);
    result.blocksLeft = blocksInUse() - before;
    return result;
}

// The attempts with each allocation of a construction failing in turn.
template <typename Build>
std::vector<Attempt> attempts(Build build) {
    close(build()); // makes what is made once and kept
    std::vector<Attempt> results;
    for (long failing = 1;; ++failing) {
        const Attempt result = attempt(build, failing);
        if (!result.allocationFailed)
            return results;
        results.push_back(result);
    }
}

AEffect* builtByTheFactory() {
    AudioEffect* effect = createEffectInstance(host);
    return effect != nullptr ? effect->getAeffect() : nullptr;
}

class FailedConstruction : public testing::Test {
  protected:
    FailedConstruction() { setenv("XDG_CONFIG_HOME", preferences.path.c_str(), 1); }

  private:
    const mirelon::test::TemporaryFolder preferences;
};

} // namespace

TEST_F(FailedConstruction, LeavesTheFactoryAsAnException) {
    const std::vector<Attempt> results = attempts(builtByTheFactory);
    ASSERT_FALSE(results.empty());
    EXPECT_TRUE(results.front().threw);
    for (std::size_t i = 0; i < results.size(); ++i)
        EXPECT_NE(results[i].threw, results[i].made) << "allocation " << i + 1;
}

TEST_F(FailedConstruction, FreesWhatWasBuilt) {
    const std::vector<Attempt> results = attempts(builtByTheFactory);
    for (std::size_t i = 0; i < results.size(); ++i)
        EXPECT_EQ(results[i].blocksLeft, 0) << "allocation " << i + 1;
}

TEST_F(FailedConstruction, MakesTheEntryPointsAnswerNull) {
    const std::vector<Attempt> expected = attempts(builtByTheFactory);
    for (const auto entry : {&VSTPluginMain, &main_macho}) {
        const auto results = attempts([entry] { return entry(host); });
        ASSERT_EQ(results.size(), expected.size());
        for (std::size_t i = 0; i < results.size(); ++i) {
            EXPECT_FALSE(results[i].threw) << "allocation " << i + 1;
            EXPECT_NE(results[i].made, expected[i].threw) << "allocation " << i + 1;
        }
    }
}
