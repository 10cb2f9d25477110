#include "support/expected_calls_support.hpp"

namespace vadelclip {

Calls joined(const std::vector<Calls>& parts) {
    Calls result;
    for (const Calls& part : parts) {
        result.insert(result.end(), part.begin(), part.end());
    }
    return result;
}

Calls errorCalls(const std::string& text) {
    // The recording layer escapes these bytes. No text of a test contains a line feed.
    std::string escaped;
    for (const char byte : text) {
        escaped += byte == '\\' ? "\\\\" : std::string(1, byte);
    }
    return {"ErrorMessage 2 " + escaped, "end ErrorMessage"};
}

Calls stateCalls() {
    return {"StateMessage 1 true Clipping elevation data...", "end StateMessage"};
}

Calls progressCalls(const std::string& values, int stepCount) {
    Calls calls = {"ProgressMessage " + values};
    for (int step = 0; step < stepCount; ++step) {
        calls.push_back("OnProgress " + std::to_string(step) + " false");
    }
    calls.push_back("end ProgressMessage");
    return calls;
}

Calls closingCalls() {
    return {"ProgressMessage 1 100 100", "OnProgress 100 false", "end ProgressMessage"};
}

Calls withoutSignOfNan(Calls calls) {
    for (std::string& call : calls) {
        for (std::size_t at = call.find("-nan"); at != std::string::npos; at = call.find("-nan")) {
            call.erase(at, 1);
        }
    }
    return calls;
}

} // namespace vadelclip
