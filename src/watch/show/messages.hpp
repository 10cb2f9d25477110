/// \file
/// Messages in the language of the tool, and names and numbers as people see them. Help stays English.
#pragma once

#include "messages/companion_messages.hpp"
#include "messages/translation.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vadelwatch {

using vadelclip::shownName;
using vadelclip::translateMessage;

/// Makes the language of the tool's messages the language of ours: see `setUpCompanionMessages`.
void setUpMessages(const std::optional<std::string>& language);

/// Translates a message id and fills in its numbered placeholders {0}, {1}, ... with these texts as `shownName` shows
/// them.
template <typename... Values>
std::string formatMessage(const std::string& messageId, const Values&... values) {
    return vadelclip::formatMessage(messageId, shownName(values)...);
}

/// Returns the number of columns of a text in UTF-8 on a terminal. Every character counts as one column.
std::size_t columnsOf(std::string_view text);

/// Returns the decimal sign of the language: a point in English, a comma in German.
char decimalSign();

/// Returns the digits in groups of three, separated by spaces, which no language reads as a decimal sign.
std::string groupedNumber(std::uint64_t number);

/// Returns the number rounded to this many decimals, with the decimal sign of the language.
std::string decimalNumber(double number, int decimals);

/// Returns a share with one decimal. One that is not exactly 0 or 100 is never shown as such: "<0.1" and ">99.9".
std::string shareText(double percent);

} // namespace vadelwatch
