#include "support/catalogue_support.hpp"

#include <boost/locale/generator.hpp>
#include <boost/locale/localization_backend.hpp>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <vector>

namespace vadelclip {

namespace {

void appendNumber(std::string& bytes, std::size_t number) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(number >> shift & 0xFF);
    }
}

/// Appends length and offset of each text to `table`, and the text with a zero byte to `texts`.
void appendTable(std::string& table, std::string& texts, std::size_t textsStart,
                 const std::vector<std::string>& entries) {
    for (const std::string& entry : entries) {
        appendNumber(table, entry.size());
        appendNumber(table, textsStart + texts.size());
        texts += entry + '\0';
    }
}

} // namespace

// The gettext manual describes the format in "The Format of GNU MO Files": seven numbers, a table of the sorted ids, a
// table of their translations, the texts. The empty id is the header. The optional hash table is absent.
void writeCatalogue(const std::string& path, const Translations& translations, const std::string& charset) {
    std::vector<std::string> ids = {""};
    std::vector<std::string> texts = {"Content-Type: text/plain; charset=" + charset + "\n"};
    for (const auto& [id, text] : translations) {
        ids.push_back(id);
        texts.push_back(text);
    }
    constexpr std::size_t headerSize = 28;
    const std::size_t tableSize = 8 * ids.size();
    const std::size_t textsStart = headerSize + 2 * tableSize;

    std::string bytes;
    for (const std::size_t number : {std::size_t{0x950412DE}, std::size_t{0}, ids.size(), headerSize,
                                     headerSize + tableSize, std::size_t{0}, textsStart}) {
        appendNumber(bytes, number);
    }
    std::string allTexts;
    appendTable(bytes, allTexts, textsStart, ids);
    appendTable(bytes, allTexts, textsStart, texts);

    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary);
    file << bytes << allTexts << std::flush;
    EXPECT_TRUE(file.good()) << path;
}

LocaleRestorer::LocaleRestorer() : consoleLocale(std::cout.getloc()) {}

LocaleRestorer::~LocaleRestorer() {
    std::locale::global(globalLocale);
    std::cout.imbue(consoleLocale);
}

GeneratedLocale::GeneratedLocale(const std::string& localeName, const Translations& translations) {
    if (!translations.empty()) {
        writeCatalogue(catalogues.pathOf("de/LC_MESSAGES/VD2D.mo"), translations);
    }
    boost::locale::localization_backend_manager manager = boost::locale::localization_backend_manager::global();
    manager.select("std");
    boost::locale::generator generator(manager);
    generator.add_messages_path(catalogues.path());
    generator.add_messages_domain("VD2D");
    std::locale::global(generator(localeName));
    std::cout.imbue(std::locale());
}

} // namespace vadelclip
