/// \file
/// Catalogues and generated locales for tests.
#pragma once

#include "support/file_support.hpp"

#include <locale>
#include <map>
#include <string>

namespace vadelclip {

/// Maps message ids to translations.
using Translations = std::map<std::string, std::string>;

/// Writes a binary gettext catalogue. Creates its directories.
///
/// @param charset the character set in the header of the catalogue; the translations are not converted to it.
void writeCatalogue(const std::string& path, const Translations& translations, const std::string& charset = "UTF-8");

/// Restores the global locale and the locale of std::cout in its destructor.
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

/// Makes a generated locale global for its lifetime, as a run in a language other than "en" does.
class GeneratedLocale {
public:
    /// @param localeName   for example "de_DE.utf8".
    /// @param translations of the domain "VD2D" for the language "de", for every name; no catalogue if empty.
    explicit GeneratedLocale(const std::string& localeName, const Translations& translations = {});

private:
    LocaleRestorer restorer;
    TemporaryDirectory catalogues;
};

} // namespace vadelclip
