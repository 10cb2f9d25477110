#include "watch/watch_options.hpp"

#include "messages/companion_messages.hpp"
#include "process/run_directories.hpp"
#include "watch/exit_status.hpp"

#include "support/german_messages.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace vadelwatch {

namespace {

CommandLineOutcome read(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "Vadelwatch");
    return readCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

const std::string usageEnd =
    "Usage: Vadelwatch [OPTIONS] input-directory-path output-directory-name boundary-file-path\n"
    "Run with --help for more information.\n";

} // namespace

TEST(WatchOptions, acceptsThreeArguments) {
    const CommandLineOutcome outcome = read({"base/data", "out", "area.xml"});
    ASSERT_TRUE(outcome.options);
    EXPECT_EQ("base/data", outcome.options->inputDirectoryPath);
    EXPECT_EQ("out", outcome.options->outputDirectoryName);
    EXPECT_EQ("area.xml", outcome.options->boundaryFilePath);
    EXPECT_FALSE(outcome.options->language || outcome.options->quiet || outcome.options->json);
    EXPECT_EQ("", outcome.options->logPath + outcome.options->mapPath);
    EXPECT_EQ((std::vector<std::string>{"base/data", "out", "area.xml", "-pipe"}), toolArguments(*outcome.options));
}

TEST(WatchOptions, optionsMayBeAnywhere) {
    const CommandLineOutcome outcome = read({"--quiet", "-x", "--lang=fr", "out", "--json", "--log", "l", "b"});
    EXPECT_FALSE(outcome.options);
    const CommandLineOutcome good = read({"--quiet", "data", "--lang=fr", "--json", "--log", "l", "--", "-out", "b"});
    ASSERT_TRUE(good.options);
    EXPECT_EQ("-out", good.options->outputDirectoryName);
    EXPECT_TRUE(good.options->quiet && good.options->json);
    EXPECT_EQ("l", good.options->logPath);
    EXPECT_EQ((std::vector<std::string>{"data", "-out", "b", "-pipe", "-lang=fr"}), toolArguments(*good.options));
}

TEST(WatchOptions, progressIsOneOfFourWords) {
    EXPECT_EQ("auto", read({"a", "b", "c"}).options->progress);
    for (const char* const word : {"auto", "bar", "plain", "none"}) {
        const CommandLineOutcome outcome = read({"a", "b", "c", "--progress", word});
        ASSERT_TRUE(outcome.options) << word;
        EXPECT_EQ(word, outcome.options->progress);
    }
}

TEST(WatchOptions, keepsNamesUnchanged) {
    const CommandLineOutcome outcome = read({"[a,b]", "{c}", "Höhe 1/%%.xml"});
    ASSERT_TRUE(outcome.options);
    EXPECT_EQ("[a,b]|{c}|Höhe 1/%%.xml", outcome.options->inputDirectoryPath + "|" +
                                             outcome.options->outputDirectoryName + "|" +
                                             outcome.options->boundaryFilePath);
}

TEST(WatchOptions, emptyLanguageIsPassedOn) {
    const CommandLineOutcome outcome = read({"--lang", "", "a", "b", "c"});
    ASSERT_TRUE(outcome.options) << outcome.standardError;
    EXPECT_EQ((std::vector<std::string>{"a", "b", "c", "-pipe", "-lang="}), toolArguments(*outcome.options));
}

TEST(WatchOptions, toolGetsLanguageWithoutCharacterSet) {
    for (const auto& [given, expected] : {std::pair("de_DE.UTF-8", "de_DE"),
                                          {"en_US.utf8", "en_US"},
                                          {"C.UTF-8", "C"},
                                          {"de", "de"},
                                          {".", ""},
                                          {"de.utf8@x", "de.utf8@x"}}) {
        WatchOptions options;
        options.language = given;
        EXPECT_EQ(expected, vadelclip::toolLanguage(options.language));
        EXPECT_EQ(std::string("-lang=") + expected, toolArguments(options).back());
    }
    EXPECT_FALSE(vadelclip::toolLanguage(std::nullopt));
}

TEST(WatchOptions, suggestsTwoHyphens) {
    for (const char* const option : {"-lang=en", "-quiet"}) {
        EXPECT_EQ("Vadelwatch: unexpected argument: " + std::string(option) + "\nDid you mean -" + option + "?\n" +
                      usageEnd,
                  read({"a", "b", "c", option}).standardError);
    }
    EXPECT_EQ("Vadelwatch: unexpected argument: -none=1\n" + usageEnd, read({"a", "b", "c", "-none=1"}).standardError);
}

TEST(WatchOptions, refusesStandardOutputAsFile) {
    const CommandLineOutcome outcome = read({"--log", "-", "a", "b", "c"});
    EXPECT_FALSE(outcome.options);
    EXPECT_EQ(0U, outcome.standardError.find("Vadelwatch: --log: standard output is for the summary"))
        << outcome.standardError;
}

TEST(WatchOptions, nothingAfterEqualsSignIsNotAValue) {
    for (const char* const option : {"--lang=", "--log="}) {
        const CommandLineOutcome outcome = read({"a", "b", "c", option});
        EXPECT_FALSE(outcome.options) << option;
        EXPECT_EQ(usageErrorStatus, outcome.exitStatus) << option;
        EXPECT_NE(std::string::npos, outcome.standardError.find(std::string(option, 5))) << outcome.standardError;
    }
}

TEST(WatchOptions, refusesEmptyFileNames) {
    const CommandLineOutcome outcome = read({"--log", "", "a", "b", "c"});
    EXPECT_FALSE(outcome.options);
    EXPECT_EQ(usageErrorStatus, outcome.exitStatus);
    EXPECT_EQ("Vadelwatch: --log: needs the name of a file\n" + usageEnd, outcome.standardError);
}

TEST(WatchOptions, equalsSignAfterEndOfOptionsIsPartOfName) {
    const CommandLineOutcome outcome = read({"--", "a", "--lang=", "--log="});
    ASSERT_TRUE(outcome.options);
    EXPECT_EQ((std::vector<std::string>{"a", "--lang=", "--log=", "-pipe"}), toolArguments(*outcome.options));
}

TEST(WatchOptions, flagsTakeNoValue) {
    for (const std::string flag : {"--quiet", "--json", "--verbose", "--help", "--version"}) {
        for (const std::string value : {"=5", "=1", "=false"}) {
            const CommandLineOutcome outcome = read({"a", "b", "c", (flag + value).c_str()});
            EXPECT_EQ(usageErrorStatus, outcome.exitStatus) << flag << value;
            EXPECT_EQ("Vadelwatch: " + flag + " takes no value.\n" + usageEnd, outcome.standardError);
        }
    }
}

TEST(WatchOptions, errorsEscapeControlCharacters) {
    EXPECT_EQ("Vadelwatch: unexpected argument: \\x1B[2J\\x0A\\xE9\n" + usageEnd,
              read({"a", "b", "c", "\x1B[2J\n\xE9"}).standardError);
}

TEST(WatchOptions, errorsNameTheArgument) {
    struct Case {
        std::vector<const char*> arguments;
        const char* words;
    };
    for (const Case& each :
         {Case{{}, "input-directory-path"}, Case{{"a", "b"}, "boundary-file-path"}, Case{{"a", "b", "c", "d"}, "d"},
          Case{{"a", "b", "c", "--no"}, "--no"}, Case{{"a", "b", "c", "--lang"}, "--lang"},
          Case{{"a", "b", "c", "--progress", "fast"}, "fast"}, Case{{"a", "b", "c", "--log="}, "--log"}}) {
        const CommandLineOutcome outcome = read(each.arguments);
        EXPECT_FALSE(outcome.options) << each.words;
        EXPECT_EQ(usageErrorStatus, outcome.exitStatus) << each.words;
        EXPECT_EQ("", outcome.standardOutput);
        EXPECT_NE(std::string::npos, outcome.standardError.find(each.words)) << outcome.standardError;
    }
}

TEST(WatchOptions, errorsAreWorded) {
    struct Case {
        std::vector<const char*> arguments;
        std::string english;
        std::string german;
    };
    for (const Case& each : {
             Case{{"a", "b"}, "the argument boundary-file-path is missing.", "Das Argument boundary-file-path fehlt."},
             Case{{"a", "b", "c", "d", "e"}, "unexpected argument: d e", "Unerwartetes Argument: d e"},
             Case{{"a", "b", "c", "--log"}, "--log needs a value.", "--log braucht einen Wert."},
             Case{{"a", "b", "c", "--log=1", "--log=2"},
                  "--log may be given only once.",
                  "--log darf nur einmal angegeben werden."},
             Case{{"a", "b", "c", "--quiet=perhaps"}, "--quiet takes no value.", "--quiet nimmt keinen Wert."},
             Case{{"a", "b", "c", "--progress=fast"},
                  "--progress: must be one of auto, bar, plain, none, not fast",
                  "--progress: erlaubt sind auto, bar, plain, none, nicht fast"},
#ifdef VADELWATCH_MAP
             Case{{"a", "b", "c", "--map-size=900x900"},
                  "--map-size needs --map.",
                  "--map-size ist nur zusammen mit --map möglich."},
#endif
         }) {
        EXPECT_EQ("Vadelwatch: " + each.english + "\n" + usageEnd, read(each.arguments).standardError);
        const GermanMessages german;
        EXPECT_EQ("Vadelwatch: " + each.german +
                      "\nAufruf: Vadelwatch [OPTIONS] input-directory-path output-directory-name boundary-file-path\n"
                      "Weitere Hinweise mit --help.\n",
                  read(each.arguments).standardError);
    }
}

TEST(WatchOptions, languageIsKnownDespiteErrors) {
    const auto language = [](std::vector<const char*> arguments) {
        arguments.insert(arguments.begin(), "Vadelwatch");
        return wantedLanguage(static_cast<int>(arguments.size()), arguments.data());
    };
    EXPECT_EQ("en", language({"--none", "--lang=en"}));
    EXPECT_EQ("de_DE", language({"a", "--log", "--lang", "de_DE.UTF-8", "-x"}));
    EXPECT_EQ("en", language({"--help", "--lang=en", "a", "b", "c", "d"}));
    EXPECT_EQ(std::nullopt, language({"a", "--lang"}));
    EXPECT_EQ(std::nullopt, language({"--", "--lang=en"}));
}

TEST(WatchOptions, helpAndVersionReturnZero) {
    for (const char* const option : {"--help", "-h", "--version"}) {
        const CommandLineOutcome outcome = read({option});
        EXPECT_FALSE(outcome.options);
        EXPECT_EQ(0, outcome.exitStatus);
        EXPECT_NE("", outcome.standardOutput);
        EXPECT_EQ("", outcome.standardError);
    }
}

TEST(RunDirectories, areThoseOfTheTool) {
    struct Case {
        const char* inputPath;
        const char* outputName;
        const char* input;
        const char* output;
    };
    for (const Case& each : {
             Case{"base/data", "out", "base/data", "base/out"},
             Case{"/base/data", "out", "/base/data", "/base/out"},
             Case{"./data", "out", "./data", "./out"},
             Case{"data", "out", "data", "out"},
             // A separator at the end: the output is in the input.
             Case{"base/data/", "out", "base/data/.", "base/data/out"},
             Case{"base/data//", "out", "base/data/.", "base/data/out"},
             // An absolute name is appended like any other.
             Case{"base/data", "/out", "base/data", "base/out"},
             Case{"base/data", "deep/out", "base/data", "base/deep/out"},
             Case{"/data", "out", "/data", "/out"},
             Case{"Höhe 1/ä", "Ziel 2", "Höhe 1/ä", "Höhe 1/Ziel 2"},
             Case{"", "", "", ""},
         }) {
        const vadelclip::RunDirectories directories = vadelclip::runDirectories(each.inputPath, each.outputName);
        EXPECT_EQ(each.input, directories.input) << each.inputPath << " and " << each.outputName;
        EXPECT_EQ(each.output, directories.output) << each.inputPath << " and " << each.outputName;
    }
}

#ifdef VADELWATCH_MAP
TEST(WatchOptions, acceptsPictureNames) {
    const CommandLineOutcome outcome = read({"a", "--map", "m.svg", "b", "c"});
    ASSERT_TRUE(outcome.options) << outcome.standardError;
    EXPECT_EQ("m.svg", outcome.options->mapPath);
    EXPECT_EQ("density", outcome.options->mapColour);
    EXPECT_EQ("", outcome.options->mapSize + outcome.options->worldFilePath);
    const CommandLineOutcome sized = read({"a", "--map", "d/m.png", "b", "c", "--map-size", "900x800"});
    ASSERT_TRUE(sized.options) << sized.standardError;
    EXPECT_EQ("900x800 d/m.pgw", sized.options->mapSize + " " + sized.options->worldFilePath);
    const CommandLineOutcome elevation = read({"a", "--map", "m.svg", "b", "c", "--map-colour=elevation"});
    ASSERT_TRUE(elevation.options) << elevation.standardError;
    EXPECT_EQ("elevation", elevation.options->mapColour);
}

TEST(WatchOptions, refusesNamesOfNoPicture) {
    EXPECT_EQ("Vadelwatch: --map: needs the name of a file\n" + usageEnd,
              read({"a", "b", "c", "--map", ""}).standardError);
    EXPECT_EQ("Vadelwatch: --map: the name must end in .png or .svg: m.jpg\n" + usageEnd,
              read({"a", "b", "c", "--map", "m.jpg"}).standardError);
    EXPECT_FALSE(read({"a", "b", "c", "--map="}).options);
    EXPECT_FALSE(read({"a", "b", "c", "--map-colour=elevation"}).options);
    EXPECT_FALSE(read({"a", "b", "c", "--map=m.png", "--map-colour=height"}).options);
    EXPECT_EQ("Vadelwatch: --map-size: must be WIDTHxHEIGHT, from 800x600 to 4096x4096: 9x9\n" + usageEnd,
              read({"a", "b", "c", "--map=m.png", "--map-size=9x9"}).standardError);
}
#else
TEST(WatchOptions, hasNoMapWithoutItsLibrary) {
    EXPECT_EQ("Vadelwatch: unexpected argument: --map=m.png\n" + usageEnd,
              read({"a", "b", "c", "--map=m.png"}).standardError);
}
#endif

} // namespace vadelwatch
