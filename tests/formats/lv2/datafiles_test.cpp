// The committed data files: what the tables of the product give, and valid.
// With MIRELON_WRITE_DATA in the environment the first test writes them anew.
#include "tests/formats/lv2/datafiles.h"

#include "tests/formats/shellcommand.h"
#include "tests/support/temporaryfolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace mirelon::test {
namespace {

const std::filesystem::path dataFolder = MIRELON_LV2_DATA;

struct DataFile {
    const char* name;
    std::string (*formed)();
};

void PrintTo(const DataFile& file, std::ostream* out) {
    *out << file.name;
}

class Lv2Data : public testing::TestWithParam<DataFile> {};
INSTANTIATE_TEST_SUITE_P(Files, Lv2Data,
                         testing::Values(DataFile{"manifest.ttl", lv2data::manifest},
                                         DataFile{"mirelon.ttl", lv2data::plugin},
                                         DataFile{"presets.ttl", lv2data::presets}));

TEST_P(Lv2Data, IsWhatTheTablesGive) {
    const std::filesystem::path file = dataFolder / GetParam().name;
    const std::string formed = GetParam().formed();
    if (std::getenv("MIRELON_WRITE_DATA") != nullptr)
        writeFile(file, formed);
    EXPECT_EQ(contentsOf(file), formed);
}

TEST_P(Lv2Data, IsInTheBundleAsItStands) {
    EXPECT_EQ(contentsOf(std::filesystem::path(MIRELON_LV2_BUNDLE) / GetParam().name),
              contentsOf(dataFolder / GetParam().name));
}

// A host shows no window that names it; that users cannot resize the window is
// said otherwise.
TEST(Lv2DataOfTheWindow, NamesNoFixedSize) {
    const std::string text = contentsOf(dataFolder / "mirelon.ttl");
    EXPECT_EQ(text.find("ui:fixedSize"), std::string::npos);
    EXPECT_NE(text.find("ui:noUserResize"), std::string::npos);
}

TEST(Lv2Validation, FindsNothingInTheBundle) {
    if (run("command -v lv2_validate sord_validate").status != 0)
        GTEST_SKIP() << "lv2_validate or sord_validate is not installed (scripts/setup)";
    const Outcome outcome = run("lv2_validate " MIRELON_LV2_DATA "/*.ttl");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_NE(outcome.output.find("Found 0 errors"), std::string::npos) << outcome.output;
    EXPECT_EQ(outcome.output.find("warning"), std::string::npos) << outcome.output;
}

// The check can fail: a class that nobody declares is found.
TEST(Lv2Validation, FindsAnUndeclaredClass) {
    if (run("command -v lv2_validate sord_validate").status != 0)
        GTEST_SKIP() << "lv2_validate or sord_validate is not installed (scripts/setup)";
    const TemporaryFolder folder;
    for (const char* name : {"manifest.ttl", "mirelon.ttl", "presets.ttl"})
        std::filesystem::copy(dataFolder / name, folder / name);
    std::string text = contentsOf(folder / "mirelon.ttl");
    text.replace(text.find("lv2:SpatialPlugin"), 17, "lv2:SpaciousPlugin");
    writeFile(folder / "mirelon.ttl", text);
    const Outcome outcome = run("lv2_validate " + folder.path.string() + "/*.ttl");
    EXPECT_EQ(outcome.output.find("Found 0 errors"), std::string::npos) << outcome.output;
}

} // namespace
} // namespace mirelon::test
