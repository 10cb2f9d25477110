#include "shard/shard_options.hpp"

#include "messages/companion_messages.hpp"

#include <CLI/CLI.hpp>

namespace vadelshard {

namespace {

constexpr const char* description = "Splits a job of Vadelclip into shards that any engine can run, and merges them "
                                    "into the output directory of one run.";

constexpr const char* footer =
    "Exit status: 0 finished, 1 failed or incomplete, 2 wrong arguments. Every command can be repeated at any time.";

constexpr std::uint64_t maxShards = 1'000'000;

CLI::App* addCommand(CLI::App& app, ShardOptions& options, Command command, const std::string& name,
                     const std::string& text) {
    CLI::App* const added = app.add_subcommand(name, text);
    added->callback([&options, command] { options.command = command; });
    added->add_option("--lang", options.language, "Language of the messages; that of the plan, or German (de)")
        ->type_name("LANGUAGE");
    if (command != Command::plan) {
        added->add_option("work-directory", options.workDirectory, "The directory <output name>.shards")->required();
    }
    return added;
}

void addPlan(CLI::App& app, ShardOptions& options) {
    CLI::App* const plan =
        addCommand(app, options, Command::plan, "plan", "Make the work directory, print the number of shards");
    // Any number, because a wrong one is refused by the tool.
    plan->add_option("job", options.plan.toolArguments,
                     "Input directory, name of the new output directory, boundary file: as for Vadelclip");
    plan->add_option("--shards", options.plan.shards, "Number of shards, unless there are fewer files and parts")
        ->check(CLI::Range(std::uint64_t{1}, maxShards))
        ->type_name("NUMBER")
        ->capture_default_str();
    plan->add_option("--part", options.plan.part, "Cut files that have more bytes than this")
        ->check(CLI::Range(std::uint64_t{1}, maxPart))
        ->type_name("BYTES")
        ->capture_default_str();
}

void addOthers(CLI::App& app, ShardOptions& options) {
    CLI::App* const clip = addCommand(app, options, Command::clip, "clip", "Clip one shard, unless that is done");
    clip->add_option("index", options.index, "Number of the shard, from 0")
        ->required()
        ->check(CLI::Range(std::uint64_t{0}, maxShards));
    clip->add_flag("--direct", options.direct,
                   "Read whole files where they are; for a local disk. By default copies are read and checked");
    addCommand(app, options, Command::merge, "merge", "Make the output directory, remove the work directory");
    CLI::App* const status =
        addCommand(app, options, Command::status, "status", "Show what is done, running and missing");
    CLI::Option* const json = status->add_flag("--json", options.status.json, "Print one JSON object");
    CLI::Option* const missing =
        status->add_flag("--missing", options.status.missing, "Print the missing indexes only, as in 0-3,7")
            ->excludes(json);
    status->add_flag("--watch", options.status.watch, "Show the progress until every shard is done")
        ->excludes(json, missing);
}

} // namespace

CommandLineOutcome readCommandLine(int argc, const char* const* argv) {
    CLI::App app(description, "Vadelshard");
    ShardOptions options;
    addPlan(app, options);
    addOthers(app, options);
    app.require_subcommand(1);
    app.set_help_flag("-h,--help", "Show this help and exit");
    app.set_version_flag("--version", "Vadelshard " VADELSHARD_VERSION, "Show the version and exit");
    app.footer(footer);
    // An argument may hold control characters, and a terminal obeys some of them.
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return vadelclip::shownName(error.what()) + "\nRun with --help for more information.\n";
    });

    CommandLineOutcome outcome;
    if (vadelclip::parseCommandLine(app, argc, argv, outcome)) {
        options.plan.language = vadelclip::toolLanguage(options.language).value_or("de");
        outcome.options = options;
    }
    return outcome;
}

} // namespace vadelshard
