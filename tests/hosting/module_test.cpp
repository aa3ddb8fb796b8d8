#include "hosting/module.h"

#include "hosting/hostingerror.h"
#include "tests/support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace mirelon::hosting {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string refusalOf(const std::filesystem::path& file) {
    try {
        const Module module(file);
    } catch (const PluginError& error) {
        return error.what();
    }
    return "";
}

std::filesystem::path testPlugin(const std::string& name) {
    return MIRELON_TEST_PLUGINS + name + ".so";
}

TEST(Module, FindsTheEntryPoint) {
    EXPECT_NE(Module(testPlugin("gain")).entryPoint(), nullptr);
}

TEST(Module, TakesTheOldEntryPointWhereThereIsNoOther) {
    const Module module(testPlugin("onlymain"));
    EXPECT_EQ(module.symbol("VSTPluginMain"), nullptr);
    EXPECT_EQ(reinterpret_cast<void*>(module.entryPoint()), module.symbol("main"));
}

TEST(Module, KnowsItsFileByItsWholePath) {
    const auto relative = std::filesystem::relative(testPlugin("gain"));
    EXPECT_EQ(Module(relative).file(), std::filesystem::absolute(relative));
}

TEST(Module, RefusesALibraryWithoutEntryPoint) {
    EXPECT_THAT(refusalOf(testPlugin("noentry")),
                AllOf(HasSubstr("noentry.so"), HasSubstr("exports no VSTPluginMain")));
}

TEST(Module, RefusesAFileThatIsNoLibrary) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "text.so", "some text\n");
    EXPECT_THAT(refusalOf(folder / "text.so"),
                AllOf(HasSubstr("text.so: not a plug-in"), Not(HasSubstr("\n"))));
}

TEST(Module, RefusesAFileThatIsNotThere) {
    EXPECT_THAT(refusalOf("/nowhere/effect.so"), HasSubstr("/nowhere/effect.so: no such"));
}

TEST(Module, RefusesAFolder) {
    const test::TemporaryFolder folder;
    EXPECT_THAT(refusalOf(folder.path), HasSubstr("not a file"));
}

} // namespace
} // namespace mirelon::hosting
