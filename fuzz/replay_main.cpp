/// \file
/// Tries the inputs of a directory, in place of libFuzzer: with any compiler, as a test.

#include "fuzz_target.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& place) {
    if (!std::filesystem::is_directory(place)) {
        return {place};
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(place)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void tryFile(const std::filesystem::path& path) {
    // On its way before the input is tried: a finding ends the process.
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    require(file.good() || file.eof(), "cannot be read");
    // A copy of exactly this size, so that the sanitizer sees a read behind it.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

} // namespace

/// Arguments: files, or directories of files. A directory without a file in it is an error.
int main(int argumentCount, char** arguments) {
    LLVMFuzzerInitialize(&argumentCount, &arguments);
    for (int i = 1; i < argumentCount; ++i) {
        const std::vector<std::filesystem::path> files = filesOf(arguments[i]);
        require(!files.empty(), std::string(arguments[i]) + " holds no input");
        std::for_each(files.begin(), files.end(), tryFile);
    }
    return argumentCount > 1 ? EXIT_SUCCESS : EXIT_FAILURE;
}
