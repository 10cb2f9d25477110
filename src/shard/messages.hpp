/// \file
/// Messages of Vadelshard, and the failure that ends a command.
#pragma once

#include "messages/companion_messages.hpp"

#include <stdexcept>
#include <string>

namespace vadelshard {

using vadelclip::translateMessage;
using vadelclip::companion::formatMessage;

/// Ends a command with exit status 1. `what()` is a translated sentence for people.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& text) : std::runtime_error(text) {}
};

/// A failure at a file, with the text of an errno.
Failure fileFailure(const std::string& path, int error);

} // namespace vadelshard
