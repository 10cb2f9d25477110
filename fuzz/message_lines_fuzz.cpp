/// \file
/// Compares the lines of the message channel with what a JSON parser reads from them. The input is the kind of message (one
/// byte), its level (four bytes) and the text.

#include "fuzz_target.hpp"

#include "processmessage/message_lines.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace vadelclip {

namespace {

using Json = nlohmann::ordered_json;

const std::string replacement = "\xEF\xBF\xBD";

/// Returns the length of the well-formed character that starts here (Unicode standard, table 3-7), or 0.
std::size_t characterLength(const std::string& text, std::size_t position) {
    struct Form {
        int firstFrom, firstTo, secondFrom, secondTo;
        std::size_t length;
    };
    static constexpr Form forms[] = {
        {0x00, 0x7F, 0, 0, 1},       {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
        {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
        {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};
    const auto in = [&text, position](std::size_t offset, int from, int to) {
        const int byte = position + offset < text.size() ? static_cast<unsigned char>(text[position + offset]) : -1;
        return byte >= from && byte <= to;
    };
    for (const Form& form : forms) {
        if (in(0, form.firstFrom, form.firstTo) && (form.length < 2 || in(1, form.secondFrom, form.secondTo)) &&
            (form.length < 3 || in(2, 0x80, 0xBF)) && (form.length < 4 || in(3, 0x80, 0xBF))) {
            return form.length;
        }
    }
    return 0;
}

/// Returns the text with one replacement character in place of each run of invalid bytes or replacement characters, because the
/// JSON library decides how many of them a run becomes.
std::string replaced(const std::string& text) {
    std::string result;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = characterLength(text, position);
        const std::string character = length == 0 ? replacement : text.substr(position, length);
        if (character != replacement || !result.ends_with(replacement)) {
            result += character;
        }
        position += std::max<std::size_t>(length, 1);
    }
    return result;
}

struct Sent {
    std::string type;
    std::string line;
    std::string keys;
};

Sent send(std::size_t kind, int level, const std::string& text) {
    switch (kind) {
    case 0:
        return {"error", errorLine(level, text), "type level text"};
    case 1:
        return {"state", stateLine(level, text, true), "type level text active"};
    case 2:
        return {"state", stateLine(level, text, false), "type level text active"};
    case 3:
        return {"failed", failedLine(level, text), "type level text"};
    default:
        return {"finish", finishLine(level, text), "type level text"};
    }
}

std::string keysOf(const Json& message) {
    std::string keys;
    for (const auto& [key, value] : message.items()) {
        keys += (keys.empty() ? "" : " ") + key;
    }
    return keys;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputBytes input(data, size);
    const std::size_t kind = input.below(5);
    int level = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        level = static_cast<int>(static_cast<unsigned int>(level) | static_cast<unsigned int>(input.byte()) << shift);
    }
    const std::string text = input.rest();
    const Sent sent = send(kind, level, text);

    requireEqual(sent.line.size() - 1, sent.line.find('\n'), "the one line feed");
    const Json message = Json::parse(sent.line);
    requireSameText(sent.keys, keysOf(message), "keys");
    requireSameText(sent.type, message["type"].get<std::string>(), "type");
    requireEqual(level, message["level"].get<int>(), "level");
    const auto received = message["text"].get<std::string>();
    if (replaced(text) == text) {
        requireSameText(text, received, "text of well-formed characters");
    }
    requireSameText(replaced(text), replaced(received), "text");
    require(received.size() <= 3 * text.size(), "more replacement characters than bytes");
    if (sent.type == "state") {
        requireEqual(kind == 1, message["active"].get<bool>(), "active");
    }
    return 0;
}

} // namespace vadelclip
