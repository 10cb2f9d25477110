/// \file
/// Translates and formats messages.
///
/// A message id is the English text, a literal at the place of use. A catalogue next to the executable may translate it.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vadelclip {

/// One argument of a formatted message: a text or a 32-bit number.
using MessageArgument = std::variant<std::string, std::int32_t>;

/// Returns the translation of a message id under the current global locale, or the id itself if there is none.
///
/// @param messageId an English text, never empty: gettext translates the empty id to the header of the catalogue.
/// @throws std::runtime_error if the catalogue is corrupt and its set-up has not noticed it.
std::string translateMessage(const std::string& messageId);

/// Implementation of `formatMessage`.
std::string formatTranslatedMessage(const std::string& messageId, const std::vector<MessageArgument>& arguments);

/// Translates a message id and fills in its numbered placeholders {0}, {1}, ...
///
/// The translation is the format string, so a wrong placeholder in a catalogue makes this function throw.
///
/// @param arguments texts and 32-bit numbers. Numbers have no digit grouping in any language.
/// @throws fmt::format_error (a std::runtime_error) for a placeholder beyond the arguments or a malformed one.
template <typename... Arguments>
std::string formatMessage(const std::string& messageId, const Arguments&... arguments) {
    return formatTranslatedMessage(messageId, {MessageArgument(arguments)...});
}

} // namespace vadelclip
