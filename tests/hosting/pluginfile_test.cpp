// What is taken for a plug-in of which format, and why something is none.
#include "hosting/pluginfile.h"

#include "hosting/hostingerror.h"
#include "tests/support/temporaryfolder.h"

#include <cstdlib>
#include <gmock/gmock.h>

namespace mirelon::hosting {
namespace {

using testing::AllOf;
using testing::HasSubstr;

const std::string amplifier = MIRELON_TEST_AMPLIFIER;

std::string reasonToRefuse(const std::string& given) {
    try {
        openPlugin(given);
    } catch (const PluginError& error) {
        return error.what();
    }
    return "";
}

// Turtle for a plug-in of this URI with these statements.
std::string plugin(const std::string& uri, const std::string& statements) {
    return "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
           "@prefix doap: <http://usefulinc.com/ns/doap#> .\n<" +
           uri + "> a lv2:Plugin ; lv2:binary <x.so> ; doap:name \"X\" " + statements + " .\n";
}

TEST(PluginFile, IsAVst2PlugInWhenItIsAFile) {
    EXPECT_EQ(formatOf(MIRELON_PLUGIN_FILE), PluginFormat::vst2);
    EXPECT_EQ(openPlugin(MIRELON_PLUGIN_FILE)->format(), PluginFormat::vst2);
    EXPECT_EQ(openPlugin(MIRELON_PLUGIN_FILE)->name(), MIRELON_PLUGIN_FILE);
}

TEST(PluginFile, IsAnLv2PlugInWhenItIsABundle) {
    const auto module = openPlugin(amplifier);
    EXPECT_EQ(module->format(), PluginFormat::lv2);
    EXPECT_EQ(module->name(), "urn:mirelon:test:amplifier");
    ASSERT_EQ(module->libraries().size(), 1U);
    EXPECT_EQ(module->libraries()[0], std::filesystem::path(amplifier) / "amplifier.so");
}

TEST(PluginFile, IsAnLv2PlugInWhenItIsAUri) {
    EXPECT_EQ(formatOf("http://example.org/x"), PluginFormat::lv2);
    setenv("LV2_PATH", std::filesystem::path(amplifier).parent_path().c_str(), 1);
    EXPECT_EQ(openPlugin("urn:mirelon:test:amplifier")->name(), "urn:mirelon:test:amplifier");
    EXPECT_THAT(reasonToRefuse("urn:mirelon:test:nothing"),
                AllOf(HasSubstr("urn:mirelon:test:nothing"), HasSubstr("LV2_PATH")));
}

TEST(PluginFile, ThatIsNotThereIsRefused) {
    EXPECT_THAT(reasonToRefuse("/nowhere/x.so"), HasSubstr("/nowhere/x.so: no such plug-in file"));
}

TEST(PluginFile, IsNoFolderWithoutAManifest) {
    const test::TemporaryFolder folder;
    EXPECT_THAT(reasonToRefuse(folder.path), HasSubstr("no manifest.ttl"));
}

TEST(PluginFile, IsNoBundleWithoutOneOrWithSeveralPlugIns) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "manifest.ttl", "");
    EXPECT_THAT(reasonToRefuse(folder.path), HasSubstr("names no plug-in"));
    test::writeFile(folder / "manifest.ttl", plugin("urn:a", "") + plugin("urn:b", ""));
    EXPECT_THAT(reasonToRefuse(folder.path), AllOf(HasSubstr("urn:a"), HasSubstr("urn:b")));
}

TEST(PluginFile, ThatNeedsMoreThanIsOfferedIsRefusedByName) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "manifest.ttl",
                    plugin("urn:a", "; lv2:requiredFeature <http://lv2plug.in/ns/ext/urid#map> , "
                                    "<urn:unheard-of>"));
    EXPECT_THAT(reasonToRefuse(folder.path), AllOf(HasSubstr("urn:a"), HasSubstr("urn:unheard-of"),
                                                   testing::Not(HasSubstr("urid"))));
}

TEST(PluginFile, WithoutItsLibraryMakesNoInstance) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "manifest.ttl", plugin("urn:a", ""));
    EXPECT_THROW(openPlugin(folder.path)->makeInstance(nullptr), PluginError);
}

} // namespace
} // namespace mirelon::hosting
