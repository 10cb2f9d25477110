/// The minimum work of any program with the promises of the tool: counts the lines of each file in blocks, then reads it
/// line by line and writes a fixed share of the lines, one system call each. Parses nothing.
///
///     floor_program <input directory> <output directory> <percent to keep>

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t blockSize = 65536;

long countLines(int input, std::vector<char>& block) {
    long lines = 0;
    for (ssize_t size = 0; (size = read(input, block.data(), blockSize)) > 0;) {
        const char* const end = block.data() + size;
        const char* position = block.data();
        while ((position = static_cast<const char*>(
                    std::memchr(position, '\n', static_cast<std::size_t>(end - position)))) != nullptr) {
            ++position;
            ++lines;
        }
    }
    return lines;
}

/// Copies the start of a line that crosses two blocks to the place before the second block.
void copyLines(int input, int output, double share, std::vector<char>& block) {
    double due = 0.0;
    std::size_t left = 0;
    block.resize(2 * blockSize);
    for (ssize_t size = 0; (size = read(input, block.data() + left, blockSize)) > 0;) {
        char* line = block.data();
        char* const end = line + left + size;
        while (char* const lineFeed =
                   static_cast<char*>(std::memchr(line, '\n', static_cast<std::size_t>(end - line)))) {
            due += share;
            if (due >= 1.0) {
                due -= 1.0;
                if (write(output, line, static_cast<std::size_t>(lineFeed + 1 - line)) < 0) {
                    std::exit(1);
                }
            }
            line = lineFeed + 1;
        }
        left = static_cast<std::size_t>(end - line);
        std::memmove(block.data(), line, left);
    }
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 4) {
        return 2;
    }
    const std::filesystem::path outputDirectory = argv[2];
    std::filesystem::create_directory(outputDirectory);
    std::vector<char> block(2 * blockSize);
    long lines = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        const int input = open(entry.path().c_str(), O_RDONLY);
        lines += countLines(input, block);
        lseek(input, 0, SEEK_SET);
        const int output =
            open((outputDirectory / entry.path().filename()).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        copyLines(input, output, std::atof(argv[3]) / 100.0, block);
        close(output);
        close(input);
    }
    return lines > 0 ? 0 : 1;
}
