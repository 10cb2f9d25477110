/// \file
/// The whole process: options, language, sender, argument count, the run, the closing message.
///
/// Exit status: 0 for a finished run, 1 for every handled failure, the usage failure included. Expected failures are
/// reported where they occur. What a library throws is caught here and nowhere else.

#include "app/command_line.hpp"
#include "app/standard_descriptors.hpp"
#include "boundary/boundary_set.hpp"
#include "clip/clip_elevation_data.hpp"
#include "messages/message_catalogues.hpp"
#include "messages/reporting.hpp"
#include "messages/translation.hpp"

#include <ProcessMessage.h>

#include <boost/filesystem/path.hpp>

#include <cstdint>
#include <exception>
#include <string>

namespace vadelclip {
namespace {

// A message refers to its text and may be delivered when it ends, so the text must outlive it.

void sendFailedMessage() {
    const std::string text = translateMessage("Clipping of elevation data with model boundaries failed.");
    const FailedMessage message(1, text);
}

void sendFinishMessage() {
    const std::string text = translateMessage("Finished clipping elevation data with model boundaries");
    const FinishMessage message(1, text);
}

std::int32_t failWithUsage() {
    reportLine(
        translateMessage("Usage: Vadelclip <input directory path> <output directory name> <boundary file path>"));
    sendFailedMessage();
    return 1;
}

/// Splits the input path, runs once and sends the closing message. Returns the exit status.
std::int32_t runOnce(BoundarySet& boundarySet, const std::string& inputDirectoryPath,
                     const std::string& outputDirectoryName, const std::string& boundaryFilePath) {
    try {
        const boost::filesystem::path inputPath(inputDirectoryPath);
        const std::int32_t result =
            clipElevationData(boundarySet, inputPath.parent_path().string(), inputPath.filename().string(),
                              outputDirectoryName, boundaryFilePath);
        if (result != 0) {
            sendFailedMessage();
            return 1;
        }
        sendFinishMessage();
        return 0;
    } catch (const std::exception& error) {
        reportLine(error.what());
        sendFailedMessage();
        return 1;
    }
}

} // namespace
} // namespace vadelclip

int main(int argc, char* argv[]) {
    std::string language = "de";
    std::int32_t expectedArgumentCount = 4;
    bool pipeMode = false;

    vadelclip::scanLanguageOption(argc, argv, language, expectedArgumentCount);
    // Before the catalogue set-up, which opens files and may print.
    vadelclip::guardStandardDescriptors();
    // Exactly "en": any other spelling of English is the name of a catalogue.
    if (language != "en") {
        vadelclip::setUpMessageCatalogues(language);
    }
    vadelclip::scanPipeOption(argc, argv, pipeMode, expectedArgumentCount);
    // Before the count test, so that the usage failure is sent as a message too.
    MessageSender::Instance(pipeMode);

    if (expectedArgumentCount != argc) {
        return vadelclip::failWithUsage();
    }
    const std::string inputDirectoryPath = argv[1];
    const std::string outputDirectoryName = argv[2];
    const std::string boundaryFilePath = argv[3];
    vadelclip::BoundarySet boundarySet;
    return vadelclip::runOnce(boundarySet, inputDirectoryPath, outputDirectoryName, boundaryFilePath);
}
