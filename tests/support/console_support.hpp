/// \file
/// Captures the console output of the tool.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace vadelclip {

/// Replaces the buffer of std::cout for its lifetime.
class ConsoleCapture {
public:
    ConsoleCapture() : original(std::cout.rdbuf(buffer.rdbuf())) {}
    ConsoleCapture(const ConsoleCapture&) = delete;
    ConsoleCapture& operator=(const ConsoleCapture&) = delete;
    ~ConsoleCapture() { std::cout.rdbuf(original); }

    std::string text() const { return buffer.str(); }

private:
    std::ostringstream buffer;
    std::streambuf* original;
};

} // namespace vadelclip
