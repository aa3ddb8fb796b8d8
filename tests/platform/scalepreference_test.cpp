#include "platform/scalepreference.h"

#include "platform/preferences.h"
#include "tests/support/temporaryfolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

class ScalePreference : public testing::Test {
  protected:
    ScalePreference() { setenv("XDG_CONFIG_HOME", folder.path.c_str(), 1); }

    TemporaryFolder folder;
};

TEST_F(ScalePreference, IsNothingAtFirstAndLeavesNoTraceThen) {
    EXPECT_EQ(chosenPercent(), std::nullopt);
    EXPECT_TRUE(is_empty(folder.path));
}

TEST_F(ScalePreference, IsWhatHasBeenChosenUntilItIsGivenUp) {
    EXPECT_TRUE(choosePercent(175));
    EXPECT_EQ(chosenPercent(), 175);
    EXPECT_TRUE(choosePercent(std::nullopt));
    EXPECT_EQ(chosenPercent(), std::nullopt);
}

TEST_F(ScalePreference, IsNothingWhenWhatIsStoredIsNoSize) {
    for (const char* nonsense : {"", "large", "0", "-100", "150%", " 150", "99999", "1e2"}) {
        Preferences preferences(userPreferencesFolder());
        preferences.set("WindowPercent", nonsense);
        ASSERT_TRUE(preferences.synchronise());
        EXPECT_EQ(chosenPercent(), std::nullopt) << nonsense;
    }
}

TEST_F(ScalePreference, CannotBeStoredWithoutAHome) {
    setenv("XDG_CONFIG_HOME", "/proc/none", 1);
    EXPECT_FALSE(choosePercent(150));
}

} // namespace
} // namespace mirelon::test
