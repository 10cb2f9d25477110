#include "app/command_line.hpp"

#include <string_view>

namespace vadelclip {

void scanLanguageOption(int argc, const char* const* argv, std::string& language, std::int32_t& expectedArgumentCount) {
    constexpr std::string_view option = "-lang=";
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.substr(0, option.size()) == option) {
            language = argument.substr(option.size());
            ++expectedArgumentCount;
            return;
        }
    }
}

void scanPipeOption(int argc, const char* const* argv, bool& pipeMode, std::int32_t& expectedArgumentCount) {
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "-pipe") {
            pipeMode = true;
            ++expectedArgumentCount;
            return;
        }
    }
}

} // namespace vadelclip
