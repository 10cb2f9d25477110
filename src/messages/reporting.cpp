#include "messages/reporting.hpp"

#include <ProcessMessage.h>

#include <iostream>

namespace vadelclip {

void reportLine(std::string text) {
    std::cout << text << std::endl;
    const ErrorMessage message(2, text);
}

} // namespace vadelclip
