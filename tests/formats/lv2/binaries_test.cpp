// The bundle's two binaries as files.
#include "hosting/sanitized.h"
#include "tests/formats/binaryfile.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>
#include <string>
#include <vector>

namespace mirelon::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsSupersetOf;

std::string binary(const char* name) {
    return std::string(MIRELON_LV2_BUNDLE) + '/' + name;
}

TEST(Lv2Binary, OfThePlugInExportsItsDescriptorAlone) {
    EXPECT_THAT(exportedBy(binary("mirelon_dsp.so")), ElementsAre("lv2_descriptor"));
}

TEST(Lv2Binary, OfTheWindowExportsItsDescriptorAlone) {
    EXPECT_THAT(exportedBy(binary("mirelon_ui.so")), ElementsAre("lv2ui_descriptor"));
}

// Hosts count up until there is none.
template <class Entry>
void expectOneAlone(const char* file, const char* entryName) {
    void* const library = dlopen(binary(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto entry = reinterpret_cast<Entry>(dlsym(library, entryName));
    ASSERT_NE(entry, nullptr);
    EXPECT_NE(entry(0), nullptr);
    EXPECT_EQ(entry(1), nullptr);
    EXPECT_EQ(entry(0xFFFFFFFF), nullptr);
    dlclose(library);
}

TEST(Lv2Binary, OfThePlugInHoldsOnePlugIn) {
    expectOneAlone<LV2_Descriptor_Function>("mirelon_dsp.so", "lv2_descriptor");
}

TEST(Lv2Binary, OfTheWindowHoldsOneWindow) {
    expectOneAlone<LV2UI_DescriptorFunction>("mirelon_ui.so", "lv2ui_descriptor");
}

TEST(Lv2Binary, OfThePlugInNeedsTheLanguagesLibrariesOnly) {
    if (hosting::sanitized)
        GTEST_SKIP() << "a sanitizer's library is needed too";
    const std::vector<std::string> allowed{"libstdc++.so.6",       "libm.so.6",
                                           "libgcc_s.so.1",        "libc.so.6",
                                           "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"};
    EXPECT_THAT(allowed, IsSupersetOf(neededBy(binary("mirelon_dsp.so"))));
}

// Pango's types stay registered with GLib, so the window's code stays mapped.
TEST(Lv2Binary, OfTheWindowStaysInMemoryAndThatOfThePlugInDoesNot) {
    EXPECT_TRUE(staysInMemory(binary("mirelon_ui.so")));
    EXPECT_FALSE(staysInMemory(binary("mirelon_dsp.so")));
}

} // namespace
} // namespace mirelon::test
