#include "app/command_line.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vadelclip {

namespace {

/// Returns the results of both scans in one line: language, expected argument count, pipe mode.
std::string scan(int argc, const char* const* argv) {
    std::string language = "de";
    std::int32_t expectedArgumentCount = 4;
    bool pipeMode = false;
    scanLanguageOption(argc, argv, language, expectedArgumentCount);
    scanPipeOption(argc, argv, pipeMode, expectedArgumentCount);
    return "'" + language + "' " + std::to_string(expectedArgumentCount) + (pipeMode ? " pipe" : "");
}

std::string scan(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "Vadelclip");
    // In a process a null pointer follows the last argument.
    arguments.push_back(nullptr);
    return scan(static_cast<int>(arguments.size()) - 1, arguments.data());
}

} // namespace

TEST(CommandLine, keepsInitialValuesWithoutOptions) {
    EXPECT_EQ("'de' 4", scan({}));
    EXPECT_EQ("'de' 4", scan({"in", "out", "b"}));
    EXPECT_EQ("'de' 4", scan({"in", "out", "b", "x"}));
}

TEST(CommandLine, findsOptionsInEveryPlace) {
    EXPECT_EQ("'de' 5 pipe", scan({"in", "out", "b", "-pipe"}));
    EXPECT_EQ("'en' 5", scan({"in", "out", "b", "-lang=en"}));
    EXPECT_EQ("'fr' 6 pipe", scan({"in", "out", "b", "-pipe", "-lang=fr"}));
    EXPECT_EQ("'fr' 6 pipe", scan({"in", "out", "b", "-lang=fr", "-pipe"}));
    EXPECT_EQ("'de' 5 pipe", scan({"-pipe", "in", "out", "b"}));
    EXPECT_EQ("'en' 5", scan({"-lang=en", "in", "out"}));
    EXPECT_EQ("'de' 5 pipe", scan({"in", "out", "-pipe"}));
    EXPECT_EQ("'it' 6 pipe", scan({"-lang=it", "-pipe"}));
}

TEST(CommandLine, readsAndCountsOnlyTheFirstLanguage) {
    EXPECT_EQ("'en' 5", scan({"in", "out", "b", "-lang=en", "-lang=de"}));
    EXPECT_EQ("'' 5", scan({"-lang=", "-lang=de", "-lang=en"}));
}

TEST(CommandLine, countsRepeatedPipeOptionOnce) {
    EXPECT_EQ("'de' 5 pipe", scan({"in", "out", "b", "-pipe", "-pipe"}));
    EXPECT_EQ("'de' 5 pipe", scan({"-pipe", "-pipe", "-pipe"}));
}

TEST(CommandLine, readsLanguageAfterTheFirstEqualsSign) {
    EXPECT_EQ("'' 5", scan({"-lang="}));
    EXPECT_EQ("'=' 5", scan({"-lang=="}));
    EXPECT_EQ("'a=b' 5", scan({"-lang=a=b"}));
    EXPECT_EQ("'-pipe' 5", scan({"-lang=-pipe"}));
    EXPECT_EQ("'-lang=de' 5", scan({"-lang=-lang=de"}));
    EXPECT_EQ("' en' 5", scan({"-lang= en"}));
    EXPECT_EQ("'de_DE@euro.utf8' 5", scan({"-lang=de_DE@euro.utf8"}));
    EXPECT_EQ("'\xFF\n' 5", scan({"-lang=\xFF\n"}));
}

TEST(CommandLine, comparesOptionsExactly) {
    for (const char* const argument :
         {"-lang",     "-lan",         "-",        "",      "lang=en", "--lang=en", "-Lang=en", "-LANG=en",
          " -lang=en", "-language=en", "-lang:en", "-Pipe", "-PIPE",   "-pip",      "-pipe ",   "-pipes",
          "--pipe",    " -pipe",       "-pipe=1",  "pipe"}) {
        EXPECT_EQ("'de' 4", scan({"in", "out", "b", argument})) << argument;
    }
}

TEST(CommandLine, ignoresTheProgramName) {
    for (const char* const name : {"-lang=en", "-pipe"}) {
        const char* const arguments[] = {name, nullptr};
        EXPECT_EQ("'de' 4", scan(1, arguments));
    }
}

TEST(CommandLine, findsNoOptionsWithoutAProgramName) {
    const char* const arguments[] = {nullptr, "-lang=en", "-pipe"};
    EXPECT_EQ("'de' 4", scan(0, arguments));
}

} // namespace vadelclip
