/// \file
/// Numbers as Vadelwatch shows them.
#pragma once

#include <cstdint>
#include <string>

namespace vadelwatch {

/// Returns the decimal sign of the language: a point in English, a comma in German.
char decimalSign();

/// Returns the digits in groups of three, separated by spaces, which no language reads as a decimal sign.
std::string groupedNumber(std::uint64_t number);

/// Returns the number rounded to this many decimals, with the decimal sign of the language.
std::string decimalNumber(double number, int decimals);

} // namespace vadelwatch
