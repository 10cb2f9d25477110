/// \file
/// The common parts of all fuzzers: entry point, values from bytes, reports of findings.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

namespace vadelclip {

/// Sets up the process of a fuzzer. libFuzzer calls it once.
extern "C" int LLVMFuzzerInitialize(int* argumentCount, char*** arguments);

/// Tries one input. Returns 0. A finding ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Takes values from the front of an input. After its end every byte is zero.
class InputBytes {
public:
    InputBytes(const std::uint8_t* data_, std::size_t size_) : data(data_), size(size_) {}

    bool isEmpty() const { return size == 0; }

    std::uint8_t byte() {
        if (isEmpty()) {
            return 0;
        }
        --size;
        return *data++;
    }

    /// Takes one byte. @param limit 1 to 256.
    std::size_t below(std::size_t limit) { return byte() % limit; }

    /// Takes eight bytes, the lowest first.
    std::uint64_t word() {
        std::uint64_t result = 0;
        for (int shift = 0; shift < 64; shift += 8) {
            result |= std::uint64_t{byte()} << shift;
        }
        return result;
    }

    std::string rest() {
        const std::string result(data, data + size);
        size = 0;
        return result;
    }

private:
    const std::uint8_t* data;
    std::size_t size;
};

/// Reports a finding and ends the process, so that the input is kept.
[[noreturn]] void reportFinding(const std::string& text);

/// Returns a printable text: other bytes as \xhh.
std::string visible(const std::string& bytes);

inline void require(bool holds, std::string_view what) {
    if (!holds) {
        reportFinding(std::string(what));
    }
}

/// Compares a result with that of the plain way.
template <typename Value>
void requireEqual(const Value& expected, const Value& got, std::string_view what) {
    if (!(expected == got)) {
        std::ostringstream text;
        text << what << "\nexpected " << expected << "\ngot      " << got;
        reportFinding(text.str());
    }
}

/// The same for texts with any bytes.
inline void requireSameText(std::string_view expected, std::string_view got, std::string_view what) {
    if (expected != got) {
        requireEqual(visible(std::string(expected)), visible(std::string(got)), what);
    }
}

/// The same for doubles, to the last bit.
inline void requireSameBits(double expected, double got, std::string_view what) {
    if (std::bit_cast<std::uint64_t>(expected) != std::bit_cast<std::uint64_t>(got)) {
        std::ostringstream text;
        text << what << std::hexfloat << "\nexpected " << expected << "\ngot      " << got;
        reportFinding(text.str());
    }
}

} // namespace vadelclip
