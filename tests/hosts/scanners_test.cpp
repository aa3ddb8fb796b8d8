// What the scanners of real hosts read from the plug-in's file.
#include "tests/hosts/ardour.h"
#include "tests/hosts/hosthome.h"
#include "tests/hosts/qtractor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using std::chrono::seconds;
using ::testing::HasSubstr;

constexpr auto museScanner = "/usr/bin/muse_plugin_scan";

TEST(ArdourScanner, ReportsNameMakerChannelsAndEditor) {
    SKIP_WITHOUT_ARDOUR();
    const HostHome home(MIRELON_PLUGIN_FILE);
    const Outcome scan = ardour::scan(home);
    ASSERT_TRUE(scan.inTime);
    EXPECT_EQ(scan.exitCode, 0);
    EXPECT_THAT(scan.output, HasSubstr(" name=\"Dravik Mirelon\" creator=\"dravik.example\""));
    EXPECT_THAT(scan.output, HasSubstr(" category=\"Mastering\""));
    EXPECT_THAT(scan.output, HasSubstr(" n_inputs=\"2\" n_outputs=\"2\""));
    EXPECT_THAT(scan.output, HasSubstr(" is_instrument=\"0\" can_process_replace=\"1\""));
    EXPECT_THAT(scan.output, HasSubstr(" has_editor=\"1\""));
}

TEST(QtractorScanner, ReportsNameChannelsParametersAndEditor) {
    SKIP_WITHOUT_QTRACTOR();
    const HostHome home(MIRELON_PLUGIN_FILE);
    const Outcome scan = qtractor::scan(home);
    ASSERT_TRUE(scan.inTime);
    EXPECT_EQ(scan.exitCode, 0);
    EXPECT_THAT(scan.output, HasSubstr("VST|Dravik Mirelon|2:2|0:0|9:0|GUI,EXT,RT|" +
                                       home.plugin().string() + "|0|0x4d724c6e"));
}

TEST(MuseScanner, ReportsNameMakerChannelsParametersAndEditor) {
    if (!isExecutable(museScanner))
        GTEST_SKIP() << "MusE is not installed (scripts/setup hosts)";
    const HostHome home(MIRELON_PLUGIN_FILE);
    writeFile(home / "found.xml", ""); // it writes into a file that exists
    const Outcome scan =
        home.run({museScanner, "-t", "255", "-p", "-f", home.plugin(), "-o", home / "found.xml"},
                 seconds(30));
    ASSERT_TRUE(scan.inTime);
    EXPECT_EQ(scan.exitCode, 0);
    const std::string found = contentsOf(home / "found.xml");
    EXPECT_THAT(found, HasSubstr("<name>Dravik Mirelon</name>"));
    EXPECT_THAT(found, HasSubstr("<maker>dravik.example</maker>"));
    EXPECT_THAT(found, HasSubstr("<uniqueID>1299336302</uniqueID>")); // "MrLn"
    EXPECT_THAT(found, HasSubstr("<inports>2</inports>"));
    EXPECT_THAT(found, HasSubstr("<outports>2</outports>"));
    EXPECT_THAT(found, HasSubstr("<ctlInports>9</ctlInports>"));
    // Bit 0: it has an editor; bit 1: it keeps its state in chunks.
    EXPECT_THAT(found, HasSubstr("<pluginFlags>3</pluginFlags>"));
    for (const char* name :
         {"width", "gain", "balance", "stability", "centerPos", "process", "phase", "-L", "-R"})
        EXPECT_THAT(found, HasSubstr("<port name=\"" + std::string(name) + "\""));
}

TEST(Scanning, LeavesNothingButArdoursCache) {
    SKIP_WITHOUT_ARDOUR();
    const HostHome home(MIRELON_PLUGIN_FILE);
    ASSERT_EQ(ardour::scan(home).exitCode, 0);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home / "home")) {
        if (!entry.is_directory() && entry.path() != home.plugin()) {
            EXPECT_THAT(entry.path().string(), HasSubstr("/.cache/ardour7/"));
        }
    }
}

} // namespace
} // namespace mirelon::test
