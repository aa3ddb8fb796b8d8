// The CLAP plug-in's file.
#include "tests/formats/binaryfile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsSupersetOf;

TEST(ClapFile, ExportsItsEntryAlone) {
    EXPECT_THAT(exportedBy(MIRELON_CLAP_FILE), ElementsAre("clap_entry"));
}

TEST(ClapFile, NeedsNoLibraryThatTheVstPlugInDoesNot) {
    EXPECT_THAT(neededBy(MIRELON_PLUGIN_FILE), IsSupersetOf(neededBy(MIRELON_CLAP_FILE)));
}

// Pango's types stay registered with GLib, so the code stays mapped.
TEST(ClapFile, StaysInMemory) {
    EXPECT_TRUE(staysInMemory(MIRELON_CLAP_FILE));
}

} // namespace
} // namespace mirelon::test
