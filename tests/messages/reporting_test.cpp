#include "messages/reporting.hpp"

#include "support/console_support.hpp"
#include "support/expected_calls_support.hpp"
#include "support/recording_messages.hpp"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>

namespace vadelclip {

namespace {

/// Replaces the buffer of std::cout and records how many messages had been sent at each flush.
class FlushRecorder : public std::stringbuf {
public:
    FlushRecorder() : original(std::cout.rdbuf(this)) {}
    ~FlushRecorder() override { std::cout.rdbuf(original); }

    std::string notes;

protected:
    int sync() override {
        notes += '\'' + str() + "' before call " + std::to_string(recordedCalls().size()) + "; ";
        return 0;
    }

private:
    std::streambuf* original;
};

} // namespace

TEST(ReportLine, printsALineBeforeItsMessageIsSent) {
    clearRecordedCalls();
    FlushRecorder console;
    reportLine("first");
    EXPECT_EQ("'first\n' before call 0; ", console.notes);
    EXPECT_EQ(errorCalls("first"), recordedCalls());
}

TEST(ReportLine, sendsEveryLineUnchangedToBothChannels) {
    clearRecordedCalls();
    ConsoleCapture console;
    reportLine("one {0}");
    reportLine("");
    reportLine("\xFF\xC3\xB6 %s");
    EXPECT_EQ("one {0}\n\n\xFF\xC3\xB6 %s\n", console.text());
    EXPECT_EQ(joined({errorCalls("one {0}"), errorCalls(""), errorCalls("\xFF\xC3\xB6 %s")}), recordedCalls());
}

TEST(ReportLine, sendsTheMessageAfterAConsoleFailure) {
    clearRecordedCalls();
    ConsoleCapture console;
    std::cout.setstate(std::ios::badbit);
    reportLine("not on the console");
    std::cout.clear();
    EXPECT_EQ("", console.text());
    EXPECT_EQ(errorCalls("not on the console"), recordedCalls());
}

} // namespace vadelclip
