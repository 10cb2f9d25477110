// The English texts of the tool for GDAL, which has no catalogues. Replaces messages/translation.cpp in the plugin.
#include "messages/translation.hpp"

#include <fmt/args.h>
#include <fmt/format.h>

namespace vadelclip {

std::string formatTranslatedMessage(const std::string& messageId, const std::vector<MessageArgument>& arguments) {
    fmt::dynamic_format_arg_store<fmt::format_context> values;
    for (const MessageArgument& argument : arguments) {
        std::visit([&values](const auto& value) { values.push_back(value); }, argument);
    }
    return fmt::vformat(messageId, values);
}

} // namespace vadelclip
