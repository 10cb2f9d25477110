#include "messages/executable_path.hpp"

#include <windows.h>

#include <boost/filesystem/path.hpp>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace vadelclip {

TEST(ExecutablePath, findsTheRunningExecutable) {
    const std::filesystem::path found = boost::filesystem::path(executablePath()).wstring();
    EXPECT_EQ(L"unit_tests.exe", found.filename().wstring());
    EXPECT_TRUE(found.is_absolute());
    // The command line of the process begins with the path of its executable.
    std::wstring started = GetCommandLineW();
    started = started.starts_with(L'"') ? started.substr(1, started.find(L'"', 1) - 1)
                                        : started.substr(0, started.find(L' '));
    EXPECT_TRUE(std::filesystem::equivalent(started, found));
}

} // namespace vadelclip
