/// \file
/// Messages of Vadelwatch in the language of the tool. Help and usage errors stay English.
#pragma once

#include "messages/translation.hpp"
#include "watch/show/shown_name.hpp"

#include <optional>
#include <string>

namespace vadelwatch {

using vadelclip::translateMessage;

/// Makes the language of the tool's messages the language of ours, for the whole process.
///
/// The messages stay English if the catalogue `vadelwatch` is missing or cannot be read, if the value names another
/// character set than UTF-8, or if it is one that ends the tool.
///
/// @param language the value of the tool's option "-lang="; without it the tool's default, German.
void setUpMessages(const std::optional<std::string>& language);

/// Translates a message id and fills in its numbered placeholders {0}, {1}, ... with these texts as `shownName` shows
/// them.
template <typename... Values>
std::string formatMessage(const std::string& messageId, const Values&... values) {
    return vadelclip::formatMessage(messageId, shownName(values)...);
}

} // namespace vadelwatch
