/// \file
/// What the companions of the tool share about messages: their language, and texts that are safe to show.
#pragma once

#include "messages/translation.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vadelclip {

/// Makes the language of the tool's messages the language of a companion's, for the whole process.
///
/// The messages stay English if the catalogue is missing or cannot be read, if the value names another character set
/// than UTF-8, or if it is one that ends the tool.
///
/// @param language the value of the tool's option "-lang="; without it the tool's default, German.
/// @param domain   name of the catalogue.
void setUpCompanionMessages(const std::optional<std::string>& language, const std::string& domain);

/// Returns a name that is safe to show on a terminal. Control characters, characters that change the direction of text,
/// and bytes that are not UTF-8 are replaced by their bytes in hexadecimal, as in `\x1B`.
std::string shownName(std::string_view name);

/// Returns the value of the tool's "-lang=" for a language: without a character set, because "de_DE.UTF-8", as in $LANG,
/// ends the tool abnormally. A value with a modifier ("@euro") is unchanged.
std::optional<std::string> toolLanguage(std::optional<std::string> language);

namespace companion {

/// Translates a message id and fills in its numbered placeholders {0}, {1}, ... with these texts as `shownName` shows
/// them.
template <typename... Values>
std::string formatMessage(const std::string& messageId, const Values&... values) {
    return vadelclip::formatMessage(messageId, shownName(values)...);
}

} // namespace companion
} // namespace vadelclip
