/// \file
/// Compares `readNumber` with formatted extraction from a string stream. The input is the text.

#include "fuzz_target.hpp"

#include "support/plain_text_support.hpp"
#include "text/number_text.hpp"

#include <vector>

namespace vadelclip {

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = InputBytes(data, size).rest();
    static PlainNumberReader plainReader;
    const NumberReading expected = plainReader.read(text);
    // Without bytes after the text, so that the sanitizer finds any byte that is read there.
    const std::vector<char> copy(text.begin(), text.end());
    const NumberReading got = readNumber({copy.data(), copy.size()});
    if (!sameReading(expected, got)) {
        reportFinding(visible(text) + "\nexpected " + describe(expected) + "\ngot      " + describe(got));
    }
    return 0;
}

} // namespace vadelclip
