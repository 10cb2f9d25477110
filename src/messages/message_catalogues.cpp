#include "messages/message_catalogues.hpp"

#include "messages/executable_path.hpp"

#include <boost/filesystem/path.hpp>
#include <boost/locale/encoding_errors.hpp>
#include <boost/locale/generator.hpp>
#include <boost/locale/localization_backend.hpp>

#include <iostream>
#include <locale>

namespace vadelclip {

namespace {

/// Selects the "std" backend, which accepts every language value. The default one crashes on some values of "-lang="
/// (twelve letters or more, "de@=b") and takes longer to start.
void chooseLocaleBackend() {
    boost::locale::localization_backend_manager manager = boost::locale::localization_backend_manager::global();
    manager.select("std");
    boost::locale::localization_backend_manager::global(manager);
}

} // namespace

std::string catalogueSearchPath(const std::string& executable) {
    return executable.empty() ? std::string() : (boost::filesystem::path(executable).parent_path() / "locale").string();
}

void setUpCatalogue(const std::string& language, const std::string& domain) {
    chooseLocaleBackend();
    boost::locale::generator generator;
    generator.add_messages_path(catalogueSearchPath(executablePath()));
    generator.add_messages_domain(domain);
    std::locale::global(generator(language + ".utf8"));
}

void setUpMessageCatalogues(const std::string& language) {
    try {
        setUpCatalogue(language, "VD2D");
        // Later streams use the new global locale automatically; this one exists already.
        std::cout.imbue(std::locale());
    } catch (const boost::locale::conv::conversion_error& error) {
        // Not sent as a message: the sender does not exist yet.
        std::cout << error.what() << std::endl;
    }
}

} // namespace vadelclip
