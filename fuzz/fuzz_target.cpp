#include "fuzz_target.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace vadelclip {

int LLVMFuzzerInitialize(int*, char***) {
    // The test support uses GoogleTest's expectations. An uncaught exception is a finding.
    GTEST_FLAG_SET(throw_on_failure, true);
    return 0;
}

void reportFinding(const std::string& text) {
    std::fprintf(stderr, "FINDING: %s\n", text.c_str());
    std::abort();
}

std::string visible(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        if (byte >= ' ' && byte <= '~') {
            text += byte;
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02x",
                          static_cast<unsigned int>(static_cast<unsigned char>(byte)));
            text += escaped;
        }
    }
    return text;
}

} // namespace vadelclip
