#include "messages/executable_path.hpp"

#include <gtest/gtest.h>

#include <filesystem>

namespace vadelclip {

TEST(ExecutablePath, theRunningExecutableIsFound) {
    EXPECT_EQ(std::filesystem::canonical("/proc/self/exe").string(), executablePath().string());
    EXPECT_EQ("unit_tests", executablePath().filename().string());
}

} // namespace vadelclip
