#include "watch/show/messages.hpp"

#include "messages/message_catalogues.hpp"

#include <boost/locale/info.hpp>

#include <exception>
#include <locale>

namespace vadelwatch {

void setUpMessages(const std::optional<std::string>& language) {
    // Exactly "en", as in the tool.
    if (language == "en") {
        return;
    }
    try {
        vadelclip::setUpCatalogue(language.value_or("de"), "vadelwatch");
        // "de.latin1@x" names another character set, but all our output is UTF-8.
        if (!std::use_facet<boost::locale::info>(std::locale()).utf8()) {
            std::locale::global(std::locale::classic());
        }
    } catch (const std::exception&) {
        // The classic locale stays: a run must not fail because of the language of its messages.
    }
}

} // namespace vadelwatch
