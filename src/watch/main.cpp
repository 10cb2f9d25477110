/// \file
/// Vadelwatch starts the tool that is in its own directory, and shows its progress, errors and result.

#include "app/standard_descriptors.hpp"
#include "messages/companion_messages.hpp"
#include "watch/exit_status.hpp"
#include "watch/show/own_output.hpp"
#include "watch/watch_options.hpp"
#include "watch/watch_run.hpp"

#include <cstring>
#include <exception>
#include <string>
#include <unistd.h>

int main(int argc, char* argv[]) {
    vadelclip::guardStandardDescriptors();
    vadelwatch::OwnOutput errors(STDERR_FILENO);
    try {
        vadelclip::setUpCompanionMessages(vadelwatch::wantedLanguage(argc, argv), "vadelwatch");
        const vadelwatch::CommandLineOutcome outcome = vadelwatch::readCommandLine(argc, argv);
        if (outcome.options) {
            return vadelwatch::watchRun(*outcome.options);
        }
        vadelwatch::OwnOutput output(STDOUT_FILENO);
        output.write(outcome.standardOutput);
        errors.write(outcome.standardError);
        if (output.failure() != 0 && !output.readerHasGone()) {
            errors.write(
                "Vadelwatch: cannot write to standard output: " + std::string(std::strerror(output.failure())) + "\n");
            return vadelwatch::usageErrorStatus;
        }
        return outcome.exitStatus;
    } catch (const std::exception& error) {
        errors.write("Vadelwatch: " + std::string(error.what()) + "\n");
        return vadelwatch::abnormalEndStatus;
    }
}
