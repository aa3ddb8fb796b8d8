#include "hosting/claplibrary.h"

#include "hosting/hostingerror.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>

namespace mirelon::hosting {
namespace {

const std::filesystem::path noPlugIn = MIRELON_TEST_PLUGINS "noentry.so";

// Takes no hold of the file.
bool isLoaded(const std::filesystem::path& file) {
    void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr)
        dlclose(handle);
    return handle != nullptr;
}

TEST(ClapLibrary, LeavesAFileThatIsNoPlugInUnloaded) {
    ASSERT_FALSE(isLoaded(noPlugIn));
    EXPECT_THROW(ClapLibrary{noPlugIn}, PluginError);
    EXPECT_FALSE(isLoaded(noPlugIn));
}

TEST(ClapLibrary, WithoutAPlugInSaysSo) {
    const ClapLibrary library(MIRELON_TEST_CLAP_EMPTY);
    EXPECT_TRUE(library.ids().empty());
    try {
        FAIL() << library.firstId();
    } catch (const PluginError& error) {
        EXPECT_STREQ(error.what(), MIRELON_TEST_CLAP_EMPTY ": there is no plug-in in it");
    }
}

} // namespace
} // namespace mirelon::hosting
