// A store that somebody else has made: a database that says it is ours and has
// code in its schema, and what lies beside it.
#include "platform/sqliteconnection.h"

#include "tests/platform/preferencefaultstest.h"

#include <chrono>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;

class ForeignPreferences : public PreferenceFaults {
  protected:
    // Makes our store, then lets its maker change it, who is bound by nothing.
    void makeStore(const std::string& changes) {
        ASSERT_TRUE(store("CurrDir", "/old/"));
        sqlite3* theirs = nullptr;
        ASSERT_EQ(sqlite3_open(storeFile.c_str(), &theirs), SQLITE_OK);
        char* why = nullptr;
        EXPECT_EQ(sqlite3_exec(theirs, changes.c_str(), nullptr, nullptr, &why), SQLITE_OK) << why;
        sqlite3_close(theirs);
    }
};

TEST_F(ForeignPreferences, ATriggerIsNotRun) {
    makeStore("INSERT INTO preferences VALUES ('DefaultBank', 'kept');"
              "CREATE TRIGGER wipe AFTER UPDATE ON preferences BEGIN"
              " DELETE FROM preferences; END;");
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_EQ(read("CurrDir"), "/new/");
    EXPECT_EQ(read("DefaultBank"), "kept");
}

TEST_F(ForeignPreferences, AViewIsNotRead) {
    makeStore("ALTER TABLE preferences RENAME TO other;"
              "CREATE VIEW preferences AS SELECT key, '/theirs/' AS value FROM other;");
    EXPECT_EQ(read("CurrDir"), std::nullopt);
}

// rtreedepth() is harmless, but SQLite vouches for it no more than for functions that
// are not.
TEST_F(ForeignPreferences, AFunctionInTheSchemaIsNotCalled) {
    makeStore("DROP TABLE preferences;"
              "CREATE TABLE preferences (key TEXT PRIMARY KEY NOT NULL, value BLOB NOT NULL,"
              " depth DEFAULT (rtreedepth(x'0001'))) WITHOUT ROWID;");
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_TRUE(exists(aside(1))) << "it has been called";
    EXPECT_EQ(read("CurrDir"), "/new/");
}

// It would be played into the new store.
TEST_F(ForeignPreferences, AJournalGoesAsideWithItsStore) {
    create_directory(storeFile); // no database, which would take the journal itself
    writeFile(storeFile.string() + "-journal", "of the other");
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_TRUE(is_directory(aside(1)));
    EXPECT_EQ(contentsOf(aside(1).string() + "-journal"), "of the other");
    EXPECT_EQ(read("CurrDir"), "/new/");
    EXPECT_EQ(filesInFolder(), 3);
}

} // namespace
} // namespace mirelon::test
