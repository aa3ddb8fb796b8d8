// Functions by their names, as the validator reports them.
#include "validator/symbolnames.h"

#include "validator/elfsymbols.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
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

TEST(PlaceOf, IsEmptyWhereNoLibraryIs) {
    const int local = 0;
    EXPECT_EQ(placeOf(&local), "");
    EXPECT_EQ(placeOf(nullptr), "");
}

TEST(FunctionAt, IsEmptyForWhatIsNoLibrary) {
    EXPECT_EQ(functionAt("/etc/passwd", 100), "");
    EXPECT_EQ(functionAt("/nonexistent", 100), "");
}

} // namespace
} // namespace mirelon::validator
