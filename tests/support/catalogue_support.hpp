/// \file
/// Catalogues and generated locales of a test.
#pragma once

#include "support/file_support.hpp"

#include <locale>
#include <map>
#include <string>

namespace vadelclip {

/// From message id to translation.
using Translations = std::map<std::string, std::string>;

/// Writes a binary gettext catalogue, its directories included.
///
/// @param charset the character set the catalogue claims to be written in; the translations are written as they stand.
void writeCatalogue(const std::string& path, const Translations& translations, const std::string& charset = "UTF-8");

/// Puts the global locale and the one of std::cout back at its end.
class LocaleRestorer {
public:
    LocaleRestorer();
    LocaleRestorer(const LocaleRestorer&) = delete;
    LocaleRestorer& operator=(const LocaleRestorer&) = delete;
    ~LocaleRestorer();

private:
    std::locale globalLocale;
    std::locale consoleLocale;
};

/// Makes a generated locale global for its lifetime, as a run in another language than "en" has it.
class GeneratedLocale {
public:
    /// @param localeName   for example "de_DE.utf8".
    /// @param translations of the domain "VD2D" for the language "de", whatever the name; no catalogue if empty.
    explicit GeneratedLocale(const std::string& localeName, const Translations& translations = {});

private:
    LocaleRestorer restorer;
    TemporaryDirectory catalogues;
};

} // namespace vadelclip
