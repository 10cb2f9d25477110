/// \file
/// The German catalogue of Vadelwatch for unit tests.
#pragma once

#include "messages/companion_messages.hpp"

#include <locale>

namespace vadelwatch {

/// Makes the messages German for its lifetime. Otherwise they are English.
class GermanMessages {
public:
    GermanMessages() { vadelclip::setUpCompanionMessages("de", "vadelwatch"); }
    GermanMessages(const GermanMessages&) = delete;
    GermanMessages& operator=(const GermanMessages&) = delete;
    ~GermanMessages() { std::locale::global(before); }

private:
    std::locale before;
};

} // namespace vadelwatch
