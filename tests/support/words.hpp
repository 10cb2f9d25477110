/// \file
/// Splits a text into words, for tables of short inputs.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace vadelclip {

/// Returns the parts of a text between white space.
inline std::vector<std::string> words(const std::string& text) {
    std::istringstream input(text);
    std::vector<std::string> result;
    for (std::string word; input >> word;) {
        result.push_back(word);
    }
    return result;
}

} // namespace vadelclip
