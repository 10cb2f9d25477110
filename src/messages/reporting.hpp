/// \file
/// The words of the tool: from a message id to the text of the moment, and the one error channel.
///
/// A message id is the English sentence itself. It stands as a literal at the place that emits it; catalogues beside
/// the executable may translate it.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vadelclip {

/// One argument of a formatted message: a text or a 32-bit number.
using MessageArgument = std::variant<std::string, std::int32_t>;

/// Gives the translation of a message id under the global locale of this moment, or the id itself where there is none.
///
/// @param messageId an English sentence, never empty: gettext answers the empty id with the catalogue's own header.
/// @throws std::runtime_error if the catalogue is corrupt in a way that shows only now.
std::string translateMessage(const std::string& messageId);

/// Implementation of `formatMessage`.
std::string formatTranslatedMessage(const std::string& messageId, const std::vector<MessageArgument>& arguments);

/// Translates a message id and fills in its numbered placeholders {0}, {1}, ...
///
/// The translation is the format string, so a mistake in a catalogue shows here and only here.
///
/// @param arguments texts and 32-bit numbers; numbers are printed plainly in every language.
/// @throws fmt::format_error (a std::runtime_error) for a placeholder beyond the arguments or a malformed one.
template <typename... Arguments>
std::string formatMessage(const std::string& messageId, const Arguments&... arguments) {
    return formatTranslatedMessage(messageId, {MessageArgument(arguments)...});
}

/// Reports an error: the text as a line on the console, flushed, then as an ErrorMessage of level 2.
///
/// The console comes first, so the line can be read when the message arrives. Neither channel can fail as far as the
/// caller is concerned. The tool's only other console line is the one of `setUpMessageCatalogues`.
void reportLine(std::string text);

} // namespace vadelclip
