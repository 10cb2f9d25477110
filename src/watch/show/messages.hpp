/// \file
/// Messages in the language of the tool, and names and numbers as people see them. Help stays English.
#pragma once

#include "messages/companion_messages.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vadelwatch {

using vadelclip::shownName;
using vadelclip::translateMessage;
using vadelclip::companion::formatMessage;

/// Returns the number of columns of a text in UTF-8 on a terminal. Every character counts as one column.
std::size_t columnsOf(std::string_view text);

/// Returns the decimal sign of the language: a point in English, a comma in German.
char decimalSign();

/// Separates the digits before the decimal sign in groups of three by spaces, which no language reads as a decimal sign.
std::string withGroups(std::string number);

/// Returns the digits in groups of three.
std::string groupedNumber(std::uint64_t number);

/// Returns the number rounded to this many decimals, with the decimal sign of the language.
std::string decimalNumber(double number, int decimals);

/// Returns a share with one decimal. One that is not exactly 0 or 100 is never shown as such: "<0.1" and ">99.9".
std::string shareText(double percent);

} // namespace vadelwatch
