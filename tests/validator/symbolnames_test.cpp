// Functions by their names, as the validator reports them.
#include "validator/symbolnames.h"

#include "tests/support/temporaryfolder.h"
#include "validator/check.h"
#include "validator/elfsymbols.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace mirelon::validator {
namespace {

// What no other file sees, and no symbol table exports.
__attribute__((noinline)) int hiddenFunction(int number) {
    asm volatile("");
    return number + 1;
}

TEST(ReadableName, IsDemangled) {
    EXPECT_EQ(readableName("_ZNSt6vectorIiE5clearEv"), "std::vector<int>::clear()");
    EXPECT_EQ(readableName("malloc"), "malloc");
    EXPECT_EQ(readableName(""), "");
}

TEST(ReadableName, HasItsMiddleLeftOutWhereItIsLong) {
    const std::string name = readableName("begin" + std::string(200, 'x') + "end");
    EXPECT_LE(name.size(), 81U);
    EXPECT_EQ(name.substr(0, 5), "begin");
    EXPECT_EQ(name.substr(name.size() - 3), "end");
    EXPECT_NE(name.find("..."), std::string::npos);
}

TEST(PlaceOf, NamesFunctionsThatAreExportedAndThatAreNot) {
    const std::string exported = placeOf(dlsym(RTLD_DEFAULT, "gnu_get_libc_version"));
    EXPECT_NE(exported.find("gnu_get_libc_version in libc.so"), std::string::npos) << exported;
    EXPECT_EQ(hiddenFunction(1), 2);
    const std::string hidden = placeOf(reinterpret_cast<const void*>(&hiddenFunction));
    EXPECT_NE(hidden.find("hiddenFunction"), std::string::npos) << hidden;
}

TEST(PlaceOf, IsTheDistanceFromTheLibrarysBeginningWhereNoFunctionIs) {
    const void* const variable = dlsym(RTLD_DEFAULT, "program_invocation_name");
    Dl_info info{};
    ASSERT_NE(dladdr(variable, &info), 0);
    std::ostringstream expected;
    expected << "libc.so.6+0x" << std::hex
             << static_cast<const char*>(variable) - static_cast<const char*>(info.dli_fbase);
    EXPECT_EQ(placeOf(variable), expected.str());
}

TEST(PlaceOf, IsEmptyWhereNoLibraryIs) {
    const int local = 0;
    EXPECT_EQ(placeOf(&local), "");
    EXPECT_EQ(placeOf(nullptr), "");
}

TEST(FunctionAt, IsEmptyForWhatIsNoLibrary) {
    EXPECT_EQ(functionAt("/etc/passwd", 100), "");
    EXPECT_EQ(functionAt("/nonexistent", 100), "");
}

// Once within its header, once before the table of its sections.
TEST(ExportedSymbols, AreNotLookedForInAFileThatIsCutOff) {
    std::ifstream whole("/proc/self/exe", std::ios::binary);
    std::string bytes(1000, '\0');
    ASSERT_TRUE(whole.read(bytes.data(), static_cast<std::streamsize>(bytes.size())));
    const test::TemporaryFolder folder;
    const std::filesystem::path file = folder / "cut.so";
    for (const std::size_t size : {std::size_t{32}, bytes.size()}) {
        std::ofstream(file, std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(size));
        try {
            exportedSymbols(file);
            ADD_FAILURE() << "read symbols in " << size << " bytes";
        } catch (const Failed& failure) {
            EXPECT_STREQ(failure.what(), "is cut off or no ELF file");
        }
    }
}

} // namespace
} // namespace mirelon::validator
