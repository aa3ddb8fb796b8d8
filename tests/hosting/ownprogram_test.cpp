#include "hosting/ownprogram.h"

#include <gtest/gtest.h>

namespace mirelon::hosting {
namespace {

TEST(OwnProgram, IsTheFileOfTheRunningProgram) {
    EXPECT_EQ(ownProgram().filename(), "hosting_test");
    EXPECT_TRUE(std::filesystem::equivalent(ownProgram(), "/proc/self/exe"));
}

} // namespace
} // namespace mirelon::hosting
