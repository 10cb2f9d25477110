#include "messages/executable_path.hpp"

#include <gtest/gtest.h>

#include <filesystem>

namespace vadelclip {

TEST(ExecutablePath, findsTheRunningExecutable) {
    EXPECT_EQ(std::filesystem::canonical("/proc/self/exe").string(), executablePath());
    EXPECT_TRUE(executablePath().ends_with("/unit_tests")) << executablePath();
}

} // namespace vadelclip
