// The bundle's two binaries as files.
#include "tests/formats/lv2/shellcommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <vector>

namespace mirelon::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;

std::vector<std::string> linesOf(const std::string& command) {
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    std::vector<std::string> lines;
    std::istringstream text(outcome.output);
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

std::string binary(const char* name) {
    return std::string(MIRELON_LV2_BUNDLE) + '/' + name;
}

std::vector<std::string> exportedBy(const char* name) {
    return linesOf("nm -D --defined-only " + binary(name) + " | awk '{print $3}'");
}

std::vector<std::string> neededBy(const char* name) {
    return linesOf("readelf -d " + binary(name) + " | sed -n 's/.*NEEDED.*\\[\\(.*\\)\\]/\\1/p'");
}

TEST(Lv2Binary, OfThePlugInExportsItsDescriptorAlone) {
    EXPECT_THAT(exportedBy("mirelon_dsp.so"), ElementsAre("lv2_descriptor"));
}

TEST(Lv2Binary, OfTheWindowExportsItsDescriptorAlone) {
    EXPECT_THAT(exportedBy("mirelon_ui.so"), ElementsAre("lv2ui_descriptor"));
}

TEST(Lv2Binary, OfThePlugInNeedsTheLanguagesLibrariesOnly) {
#ifdef MIRELON_SANITIZED
    GTEST_SKIP() << "a sanitizer's library is needed too";
#endif
    const std::vector<std::string> allowed{"libstdc++.so.6",       "libm.so.6",
                                           "libgcc_s.so.1",        "libc.so.6",
                                           "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"};
    EXPECT_THAT(allowed, IsSupersetOf(neededBy("mirelon_dsp.so")));
}

// Pango's types stay registered with GLib, so the window's code stays mapped.
TEST(Lv2Binary, OfTheWindowStaysInMemoryAndThatOfThePlugInDoesNot) {
    const auto flags = [](const char* name) { return run("readelf -d " + binary(name)).output; };
    EXPECT_THAT(flags("mirelon_ui.so"), HasSubstr("NODELETE"));
    EXPECT_THAT(flags("mirelon_dsp.so"), Not(HasSubstr("NODELETE")));
}

} // namespace
} // namespace mirelon::test
