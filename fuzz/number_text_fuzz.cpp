/// \file
/// Compares `readNumber` with formatted extraction from a string stream. The input is the text.

#include "fuzz_target.hpp"

#include "support/plain_text_support.hpp"
#include "text/number_text.hpp"

namespace vadelclip {

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = InputBytes(data, size).rest();
    static PlainNumberReader plainReader;
    const NumberReading expected = plainReader.read(text);
    const NumberReading got = readNumber(text);
    if (!sameReading(expected, got)) {
        reportFinding(visible(text) + "\nexpected " + describe(expected) + "\ngot      " + describe(got));
    }
    return 0;
}

} // namespace vadelclip
