/// \file
/// Compares `LineReader`, `readTextLine` and `countLineFeeds` with lines cut out of the bytes. The input is the file, with
/// one exception: \x1C and the byte n after it mean a run of 65,408 + n bytes, about the size of the reader's buffer.

#include "fuzz_target.hpp"

#include "support/file_support.hpp"
#include "support/plain_text_support.hpp"
#include "text/line_reader.hpp"
#include "text/text_lines.hpp"

#include <fstream>

namespace vadelclip {

namespace {

std::string contentFrom(InputBytes& input) {
    constexpr std::size_t minRun = 65536 - 128;
    std::string content;
    int runs = 0;
    while (!input.isEmpty()) {
        const std::uint8_t byte = input.byte();
        if (byte == 0x1C && runs < 3) {
            content.append(minRun + input.byte(), 'l');
            ++runs;
        } else {
            content += static_cast<char>(byte);
        }
    }
    return content;
}

void checkLineReader(const std::string& path, const std::vector<std::string>& expected) {
    LineReader reader(path);
    for (const std::string& line : expected) {
        requireSameText(line, reader.nextLine(), "nextLine");
        // Not for every line: the next one must be correct in both cases.
        if (line.size() % 3 != 0) {
            requireSameText(line + '\n', reader.lineWithLineFeed(), "lineWithLineFeed");
        }
    }
    requireSameText("", reader.nextLine(), "nextLine after the end");
    requireSameText("\n", reader.lineWithLineFeed(), "lineWithLineFeed after the end");
}

void checkTextLines(const std::string& path, const std::vector<std::string>& expected) {
    std::ifstream input(path);
    std::string line;
    for (const std::string& expectedLine : expected) {
        readTextLine(input, line);
        requireSameText(expectedLine, line, "readTextLine");
    }
    readTextLine(input, line);
    requireSameText("", line, "readTextLine after the end");
}

void checkCounts(const std::string& path, std::uint64_t lineFeeds) {
    std::ifstream input(path);
    requireEqual(lineFeeds, countLineFeeds(input), "countLineFeeds");

    std::ifstream behindHeader(path);
    std::string line;
    readTextLine(behindHeader, line);
    requireEqual(lineFeeds == 0 ? 0 : lineFeeds - 1, countLineFeeds(behindHeader), "countLineFeeds after a line");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    InputBytes input(data, size);
    const std::string content = contentFrom(input);
    const std::string path = directory.write("a.xyz", content);

    std::vector<std::string> lines = terminatedLines(content);
    lines.push_back(unterminatedLine(content));
    checkLineReader(path, lines);
    checkTextLines(path, lines);
    checkCounts(path, lines.size() - 1);
    return 0;
}

} // namespace vadelclip
