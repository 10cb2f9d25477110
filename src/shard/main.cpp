/// \file
/// Vadelshard splits a job of the tool into shards and merges them.

#include "app/standard_descriptors.hpp"
#include "messages/companion_messages.hpp"
#include "shard/interruption.hpp"
#include "shard/job.hpp"
#include "shard/messages.hpp"
#include "shard/shard_options.hpp"

#include <exception>
#include <iostream>
#include <optional>
#include <string>

namespace vadelshard {
namespace {

/// The language of the option, otherwise that of the plan, if there is one.
std::optional<std::string> languageOf(const ShardOptions& options) {
    if (options.language || options.command == Command::plan) {
        return options.plan.language;
    }
    try {
        return readJob(workDirectoryAt(options.workDirectory)).language;
    } catch (const Failure&) {
        return std::nullopt; // The command reports it.
    }
}

int runCommand(const ShardOptions& options) {
    switch (options.command) {
    case Command::clip:
        return clipShard(options.workDirectory, options.index, options.direct);
    case Command::merge:
        return mergeShards(options.workDirectory);
    case Command::status:
        return showStatus(options.workDirectory, options.status);
    default:
        return planJob(options.plan);
    }
}

/// Returns the status, unless something that was printed has not been written.
int flushedStatus(int status) {
    if (!std::cout.flush()) {
        std::cerr << "Vadelshard: " << translateMessage("cannot write to standard output") << '\n';
        return status == finishedStatus ? failedStatus : status;
    }
    return status;
}

} // namespace
} // namespace vadelshard

int main(int argc, char* argv[]) {
    using namespace vadelshard;
    vadelclip::guardStandardDescriptors();
    try {
        const CommandLineOutcome outcome = readCommandLine(argc, argv);
        if (!outcome.options) {
            std::cout << outcome.standardOutput;
            std::cerr << outcome.standardError;
            return flushedStatus(outcome.exitStatus);
        }
        vadelclip::setUpCompanionMessages(languageOf(*outcome.options), "vadelshard");
        watchForInterruption();
        return flushedStatus(runCommand(*outcome.options));
    } catch (const std::exception& error) {
        std::cerr << "Vadelshard: " << error.what() << '\n';
        return failedStatus;
    }
}
