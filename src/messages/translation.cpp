#include "messages/translation.hpp"

#include <boost/locale/message.hpp>
#include <fmt/args.h>
#include <fmt/format.h>

namespace vadelclip {

std::string translateMessage(const std::string& messageId) {
    return boost::locale::translate(messageId).str();
}

std::string formatTranslatedMessage(const std::string& messageId, const std::vector<MessageArgument>& arguments) {
    fmt::dynamic_format_arg_store<fmt::format_context> values;
    for (const MessageArgument& argument : arguments) {
        std::visit([&values](const auto& value) { values.push_back(value); }, argument);
    }
    return fmt::vformat(translateMessage(messageId), values);
}

} // namespace vadelclip
