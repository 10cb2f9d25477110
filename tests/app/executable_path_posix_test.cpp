#include "app/executable_path.hpp"

#include <gtest/gtest.h>

#include <filesystem>

TEST(ExecutablePath, theRunningExecutableIsFound) {
    EXPECT_EQ(std::filesystem::canonical("/proc/self/exe").string(), executablePath());
    EXPECT_TRUE(executablePath().ends_with("/unit_tests")) << executablePath();
}
