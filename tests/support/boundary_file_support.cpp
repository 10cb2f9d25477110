#include "support/boundary_file_support.hpp"

#include "boundary/boundary_reader.hpp"

#include "support/console_support.hpp"
#include "support/file_support.hpp"
#include "support/recording_messages.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

Reading readBoundaryAt(const std::string& path) {
    Reading reading;
    clearRecordedCalls();
    const ConsoleCapture console;
    reading.succeeded = readBoundaryFile(reading.set, path);
    reading.console = console.text();
    reading.calls = recordedCalls();
    return reading;
}

Reading readBoundaryBytes(const std::string& bytes) {
    const TemporaryDirectory directory;
    return readBoundaryAt(directory.write("area.xml", bytes));
}

std::string inModel(const std::string& content) {
    return "<VADELSIM><VadeDGM>" + content + "</VadeDGM></VADELSIM>";
}

std::string inBoundaries(const std::string& content) {
    return inModel("<group type=\"boundaries\">" + content + "</group>");
}

void expectRead(const std::vector<Outline>& outlines, const std::string& bytes) {
    const Reading reading = readBoundaryBytes(bytes);
    EXPECT_TRUE(reading.succeeded) << bytes;
    EXPECT_EQ(asText(setOf(outlines)), asText(reading.set)) << bytes;
    EXPECT_EQ("", reading.console) << bytes;
    EXPECT_EQ(Calls(), reading.calls) << bytes;
}

void expectFailed(const std::string& error, const Reading& reading) {
    EXPECT_FALSE(reading.succeeded);
    EXPECT_EQ(error + "\n", reading.console);
    EXPECT_EQ(errorCalls(error), reading.calls);
}

void expectFailedEmpty(const std::string& error, const std::string& path) {
    const Reading reading = readBoundaryAt(path);
    SCOPED_TRACE(path);
    expectFailed(error, reading);
    EXPECT_EQ("", asText(reading.set));
}

void expectNotFound(const std::string& bytes) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("area.xml", bytes);
    SCOPED_TRACE(bytes);
    expectFailedEmpty("Boundary file " + path + " not found", path);
}

void expectNoModel(const std::string& bytes) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("area.xml", bytes);
    SCOPED_TRACE(bytes);
    expectFailedEmpty("Could not find the VadeDGM tag in the boundary file " + path, path);
}

} // namespace vadelclip
