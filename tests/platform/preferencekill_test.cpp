// Eight processes store at once, some of them killed at a random moment.
#include "platform/preferences.h"
#include "platform/sqliteconnection.h"

#include "tests/support/childprocess.h"
#include "tests/support/temporaryfolder.h"

#include <array>
#include <charconv>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <random>

namespace mirelon::test {
namespace {

constexpr int writers = 8;
constexpr int storings = 200;

// As long as a bank; begins with its number, and shows any mixture.
std::string valueOf(int writer, int number) {
    std::string value = std::to_string(number) + ':';
    value.resize(665, static_cast<char>('a' + (writer + number) % 26));
    return value;
}

std::string keyOf(int writer) {
    return "key " + std::to_string(writer);
}

// A storing gives up when others are busy for too long, which on a loaded
// machine they may be; it is tried again, as a user would.
bool storeWithPatience(const std::string& folder, int writer, int number) {
    constexpr int attempts = 30;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        Preferences preferences(folder);
        preferences.set(keyOf(writer), valueOf(writer, number));
        if (preferences.synchronise())
            return true;
    }
    return false;
}

// 0, or 100 when a storing failed.
int storeMany(const std::string& folder, int writer) {
    int code = 0;
    for (int number = 0; number < storings; ++number)
        if (!storeWithPatience(folder, writer, number))
            code = 100;
    return code;
}

// The number of the complete value, or -1.
int numberIn(const std::string& value, int writer) {
    int number = -1;
    std::from_chars(value.data(), value.data() + value.size(), number);
    return value == valueOf(writer, number) ? number : -1;
}

std::string integrity(const std::filesystem::path& file) {
    SqliteConnection database(file, SqliteConnection::Mode::existing, std::chrono::seconds(5));
    SqliteStatement check(database, "PRAGMA integrity_check");
    return check.step() == SQLITE_ROW ? check.blob() : "cannot be checked";
}

TEST(PreferencesUnderKills, EveryKeyHoldsACompleteValueThatSomebodyWrote) {
    const TemporaryFolder folder;
    const std::string place = folder.path.string();
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);

    for (int writer = 0; writer < writers; ++writer) {
        Preferences preferences(place);
        preferences.set(keyOf(writer), valueOf(writer, 0));
        ASSERT_TRUE(preferences.synchronise());
    }
    std::array<std::unique_ptr<ChildProcess>, writers> processes;
    for (int writer = 0; writer < writers; ++writer)
        processes[static_cast<std::size_t>(writer)] =
            std::make_unique<ChildProcess>([&, writer] { return storeMany(place, writer); });
    // Every second one is killed, each after another random pause.
    for (std::size_t writer = 0; writer < writers; writer += 2) {
        usleep(std::uniform_int_distribution<unsigned>(0, 150000)(random));
        processes[writer]->kill(SIGKILL);
    }

    std::array<int, writers> codes{};
    for (std::size_t writer = 0; writer < writers; ++writer)
        codes[writer] = processes[writer]->wait();
    int killed = 0;
    for (int writer = 0; writer < writers; ++writer) {
        const int code = codes[static_cast<std::size_t>(writer)];
        killed += code == -SIGKILL ? 1 : 0;
        const auto value = Preferences(place).get(keyOf(writer));
        ASSERT_TRUE(value) << "writer " << writer;
        const int number = numberIn(*value, writer);
        EXPECT_GE(number, 0) << "writer " << writer << " left a value that nobody wrote";
        if (code == 0)
            EXPECT_EQ(number, storings - 1) << "writer " << writer;
        else
            EXPECT_EQ(code, -SIGKILL) << "writer " << writer << " could not store every time";
    }
    EXPECT_GT(killed, 0);
    EXPECT_EQ(integrity(folder.path / PreferenceStore::fileName), "ok");
    EXPECT_FALSE(exists(folder.path / "preferences.sqlite3.damaged-1"));
}

} // namespace
} // namespace mirelon::test
