#include "messages/message_catalogues.hpp"

#include "messages/executable_path.hpp"
#include "messages/translation.hpp"
#include "support/catalogue_support.hpp"
#include "support/console_support.hpp"
#include "support/expected_calls_support.hpp"
#include "support/recording_messages.hpp"

#include <boost/locale/encoding_errors.hpp>
#include <boost/locale/info.hpp>
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>

namespace vadelclip {

namespace {

constexpr const char* noFiles = "There are no input files.";

/// A catalogue in the directory of this executable. Tests that run at the same time need different folders.
class CatalogueNextToExecutable {
public:
    CatalogueNextToExecutable(const std::string& folder, const Translations& translations,
                              const std::string& charset = "UTF-8")
        : directory((std::filesystem::path(executablePath()).parent_path() / "locale" / folder).string()) {
        writeCatalogue(directory + "/LC_MESSAGES/VD2D.mo", translations, charset);
    }
    CatalogueNextToExecutable(const CatalogueNextToExecutable&) = delete;
    CatalogueNextToExecutable& operator=(const CatalogueNextToExecutable&) = delete;
    ~CatalogueNextToExecutable() { std::filesystem::remove_all(directory); }

private:
    std::string directory;
};

/// Returns what a language value sets up: language, country and encoding of the global locale, and a message in it.
std::string setUp(const std::string& language) {
    const LocaleRestorer restorer;
    setUpMessageCatalogues(language);
    const std::locale locale;
    if (!std::has_facet<boost::locale::info>(locale)) {
        return "classic";
    }
    const boost::locale::info& info = std::use_facet<boost::locale::info>(locale);
    return info.language() + "|" + info.country() + "|" + info.encoding() + "|" + translateMessage(noFiles);
}

} // namespace

TEST(MessageCatalogues, readsTranslationsNextToTheExecutable) {
    const CatalogueNextToExecutable catalogue("vadelone", {{noFiles, "Keine Höhendateien"}});
    EXPECT_EQ("vadelone||utf8|Keine Höhendateien", setUp("vadelone"));
}

TEST(MessageCatalogues, usesOneCatalogueForEveryCountry) {
    const CatalogueNextToExecutable catalogue("vadeltwo", {{noFiles, "Keine Dateien"}});
    EXPECT_EQ("vadeltwo|DE|utf8|Keine Dateien", setUp("vadeltwo_DE"));
    EXPECT_EQ("vadeltwo|DE|utf8|Keine Dateien", setUp("VADELTWO-de"));
}

TEST(MessageCatalogues, keepsIdsWithoutACatalogue) {
    EXPECT_EQ("fr||utf8|There are no input files.", setUp("fr"));
    EXPECT_EQ("de|DE|utf8|There are no input files.", setUp("de_DE"));
    EXPECT_EQ("en||utf8|There are no input files.", setUp("EN"));
    EXPECT_EQ("en|US|utf8|There are no input files.", setUp("en_US"));
}

TEST(MessageCatalogues, acceptsAnyLanguageValue) {
    // Twelve or more letters, and "=" in the variant, crash another backend of the library.
    EXPECT_EQ("abcdefghijkl||utf8|There are no input files.", setUp("abcdefghijkl"));
    EXPECT_EQ("de||us-ascii|There are no input files.", setUp("de@=b"));
    for (const char* const language : {"", "../x", "/etc", "d e", "1", "\xFF", "a\nb", "%s"}) {
        EXPECT_EQ("C||us-ascii|There are no input files.", setUp(language)) << language;
    }
}

TEST(MessageCatalogues, consoleUsesTheLocale) {
    const LocaleRestorer restorer;
    setUpMessageCatalogues("fr");
    EXPECT_TRUE(std::has_facet<boost::locale::info>(std::cout.getloc()));
}

TEST(MessageCatalogues, numbersKeepTheClassicNotation) {
    for (const char* const language : {"de", "de_DE", "fr_FR", "ar_EG", ""}) {
        const LocaleRestorer restorer;
        setUpMessageCatalogues(language);
        std::ostringstream output;
        output << 1234567 << ' ' << 1234.5;
        EXPECT_EQ("1234567 1234.5", output.str()) << language;
        std::istringstream input("1.234.567");
        double number = 0.0;
        input >> number;
        EXPECT_EQ(1.234, number) << language;
    }
}

TEST(MessageCatalogues, reportsInvalidBytesInOneConsoleLine) {
    const CatalogueNextToExecutable catalogue("vadelthree", {{noFiles, "Keine H\xF6hendateien"}});
    clearRecordedCalls();
    ConsoleCapture console;
    const std::locale consoleLocale = std::cout.getloc();
    EXPECT_EQ("classic", setUp("vadelthree"));
    EXPECT_EQ("Conversion failed\n", console.text());
    EXPECT_EQ(consoleLocale, std::cout.getloc());
    EXPECT_EQ(Calls(), recordedCalls());
}

TEST(MessageCatalogues, keepsTheFormerLocaleAfterAFailure) {
    const CatalogueNextToExecutable catalogue("vadelfour", {{noFiles, "Keine H\xF6hendateien"}});
    const LocaleRestorer restorer;
    setUpMessageCatalogues("fr");
    ConsoleCapture console;
    EXPECT_EQ("fr||utf8|There are no input files.", setUp("vadelfour"));
    EXPECT_EQ("Conversion failed\n", console.text());
}

TEST(MessageCatalogues, throwsForUnknownCharacterSetInTheCatalogue) {
    const CatalogueNextToExecutable catalogue("vadelfive", {{noFiles, "Keine Dateien"}}, "no-such-charset");
    ConsoleCapture console;
    EXPECT_THROW(setUp("vadelfive"), boost::locale::conv::invalid_charset_error);
    EXPECT_EQ("", console.text());
}

TEST(MessageCatalogues, throwsForUnknownCharacterSetInTheLanguage) {
    const CatalogueNextToExecutable catalogue("vadelseven", {{noFiles, "Keine Dateien"}});
    ConsoleCapture console;
    EXPECT_THROW(setUp("vadelseven.latin1"), boost::locale::conv::invalid_charset_error);
    EXPECT_THROW(setUp("vadelseven.utf8"), boost::locale::conv::invalid_charset_error);
    EXPECT_EQ("", console.text());
}

TEST(MessageCatalogues, acceptsUnknownCharacterSetWithoutACatalogue) {
    EXPECT_EQ("fr||latin1.utf8|There are no input files.", setUp("fr.latin1"));
}

TEST(MessageCatalogues, throwsForAFileThatIsNoCatalogue) {
    const std::string directory = (std::filesystem::path(executablePath()).parent_path() / "locale/vadelsix").string();
    const CatalogueNextToExecutable catalogue("vadelsix", {});
    std::filesystem::resize_file(directory + "/LC_MESSAGES/VD2D.mo", 3);
    ConsoleCapture console;
    try {
        setUp("vadelsix");
        FAIL() << "nothing thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ("Invalid file format", error.what());
    }
    EXPECT_EQ("", console.text());
}

TEST(CatalogueSearchPath, isNextToTheExecutable) {
    EXPECT_EQ(catalogueSearchPath("/opt/tools/Vadelclip"), std::string("/opt/tools") + joint + "locale");
    EXPECT_EQ(catalogueSearchPath("/Vadelclip"), "/locale");
}

TEST(CatalogueSearchPath, isEmptyWithoutAnExecutablePath) {
    EXPECT_EQ(catalogueSearchPath(""), "");
}

} // namespace vadelclip
