#include "text/line_reader.hpp"

#include "support/file_support.hpp"
#include "support/workload.hpp"
#include "text/text_lines.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace vadelclip {

namespace {

using Lines = std::vector<std::string>;

/// Returns the first lines as a file stream returns them, also beyond the end.
Lines plainLines(const std::string& path, std::size_t count) {
    std::ifstream input(path);
    Lines lines;
    std::string line;
    while (lines.size() < count) {
        readTextLine(input, line);
        lines.push_back(line);
    }
    return lines;
}

Lines readerLines(const std::string& path, std::size_t count) {
    LineReader reader(path);
    Lines lines;
    while (lines.size() < count) {
        lines.emplace_back(reader.nextLine());
    }
    return lines;
}

/// Returns a number of lines that includes some beyond the last one, which are empty.
std::size_t enoughFor(const std::string& content) {
    return static_cast<std::size_t>(std::count(content.begin(), content.end(), '\n')) + 3;
}

std::string randomContent(std::mt19937& random) {
    static const std::string bytes = std::string("\n\n\r\rxyz;1") + '\0';
    const std::size_t longRun = random() % 4 == 0 ? 65000 + random() % 3000 : 0;
    std::string content(longRun, 'x');
    for (std::size_t size = random() % 60; size > 0; --size) {
        content += bytes[random() % bytes.size()];
    }
    return content;
}

} // namespace

TEST(LineReader, returnsSameLinesAsFileStream) {
    const TemporaryDirectory directory;
    std::mt19937 random(1);
    for (int round = 0; round < workload(4000); ++round) {
        const std::string content = randomContent(random);
        const std::string path = directory.write("a.xyz", content);
        const std::size_t count = enoughFor(content);
        ASSERT_EQ(readerLines(path, count), plainLines(path, count)) << testing::PrintToString(content);
    }
}

TEST(LineReader, assemblesLineLongerThanBuffer) {
    const TemporaryDirectory directory;
    for (std::size_t length = 65530; length <= 65540; ++length) {
        for (const char* const lineEnd : {"\n", "\r\n", "\r\r\n"}) {
            const std::string content =
                std::string(length, 'a') + lineEnd + std::string(200000, 'b') + lineEnd + "c" + lineEnd;
            const std::string path = directory.write("a.xyz", content);
            ASSERT_EQ(readerLines(path, 5), plainLines(path, 5)) << length;
        }
    }
}

TEST(LineReader, keepsLinesValidWhileBufferedOnesAreTaken) {
    const TemporaryDirectory directory;
    std::mt19937 random(2);
    std::string content;
    for (int i = 0; i < 30000; ++i) {
        content += std::string(random() % 20, 'x') + (random() % 2 == 0 ? "\n" : "\r\n");
    }
    const std::string path = directory.write("a.xyz", content);
    const Lines expected = plainLines(path, 30000);
    LineReader reader(path);
    Lines lines;
    std::size_t takenAtOnce = 0;
    while (lines.size() < expected.size()) {
        std::vector<std::string_view> views{(reader.nextLine(), reader.lineWithLineFeed())};
        while (reader.takeBufferedLine()) {
            views.push_back(reader.lineWithLineFeed());
        }
        takenAtOnce = std::max(takenAtOnce, views.size());
        for (const std::string_view view : views) {
            ASSERT_TRUE(view.ends_with('\n'));
            lines.emplace_back(view.substr(0, view.size() - 1));
        }
    }
    EXPECT_EQ(lines, expected);
    EXPECT_GT(takenAtOnce, 1000U);
}

TEST(LineReader, appendsOneLineFeedAfterAnyLineEnd) {
    const TemporaryDirectory directory;
    const std::string longLine(100000, 'l');
    LineReader reader(directory.write("a.xyz", "unix\nwindows\r\n\nlone\rreturn\n" + longLine + "\r\nlast\r"));
    Lines lines;
    for (int i = 0; i < 7; ++i) {
        reader.nextLine();
        lines.emplace_back(reader.lineWithLineFeed());
    }
    EXPECT_EQ(lines, (Lines{"unix\n", "windows\n", "\n", "lone\rreturn\n", longLine + "\n", "last\r\n", "\n"}));
}

TEST(LineReader, readsNothingFromDirectoryOrMissingFile) {
    const TemporaryDirectory directory;
    EXPECT_EQ(readerLines(directory.path(), 2), (Lines{"", ""}));
    EXPECT_EQ(readerLines(directory.pathOf("absent.xyz"), 2), (Lines{"", ""}));
}

TEST(LineReader, returnsLineOfPipeAsSoonAsItArrives) {
    const TemporaryDirectory directory;
    std::atomic<int> linesSeen = 0;
    const auto waitForLine = [&linesSeen](int count) {
        while (linesSeen < count) {
            std::this_thread::yield();
        }
    };
    // Each step waits for the line before, so a reader that waits for a full block would wait forever.
    const ServedFile file(directory.pathOf("a.xyz"), {{"first\n", [&] { waitForLine(1); }, "sec", "ond\n",
                                                       [&] { waitForLine(2); }, "third\nrest"}});
    LineReader reader(directory.pathOf("a.xyz"));
    for (const char* const expected : {"first", "second", "third", "rest", ""}) {
        EXPECT_EQ(reader.nextLine(), expected);
        ++linesSeen;
    }
}

TEST(LineReader, doesNotReadAgainAfterEndOfFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a.xyz", "first\n");
    LineReader reader(path);
    EXPECT_EQ(reader.nextLine(), "first");
    EXPECT_EQ(reader.nextLine(), "");
    std::ofstream(path, std::ios::app) << "second\n";
    EXPECT_EQ(reader.nextLine(), "");
}

} // namespace vadelclip
