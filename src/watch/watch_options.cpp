#include "watch/watch_options.hpp"

#include "watch/exit_status.hpp"
#ifdef VADELWATCH_MAP
#include "watch/map/picture.hpp"
#endif
#include "watch/show/messages.hpp"

#include <CLI/CLI.hpp>
#include <boost/filesystem/path.hpp>

#include <sstream>

namespace vadelwatch {

namespace {

constexpr const char* description =
    "Starts the Vadelclip next to it, shows its progress, sums up what it did and checks its output.";

constexpr const char* footer =
    "Exit status: 0 finished, 1 the tool failed, 2 wrong arguments or a log, map or summary that\n"
    "cannot be written, 3 the output does not add up to total_node_count.txt, 4 the tool did not\n"
    "start or ended abnormally.";

std::string requireFileName(const std::string& path) {
    return path.empty() ? "needs the name of a file" : "";
}

#ifdef VADELWATCH_MAP
std::string requirePictureFileName(const std::string& path) {
    return isPictureFileName(path) ? "" : "the name must end in .png or .svg: " + path;
}

std::string requirePictureSize(const std::string& size) {
    return readPictureSize(size) ? "" : "must be WIDTHxHEIGHT, from 800x600 to 4096x4096: " + size;
}
#endif

void addArguments(CLI::App& app, WatchOptions& options) {
    app.add_option("input-directory-path", options.inputDirectoryPath, "Directory of node files, with its parent")
        ->required();
    app.add_option("output-directory-name", options.outputDirectoryName,
                   "Name of the new directory next to the input directory")
        ->required();
    app.add_option("boundary-file-path", options.boundaryFilePath, "XML file with the polygons")->required();
}

void addOptions(CLI::App& app, WatchOptions& options) {
    app.add_option("--lang", options.language, "Language of the messages; German (de) unless given")
        ->type_name("LANGUAGE");
    app.add_flag("--quiet", options.quiet, "Show errors only");
    app.add_flag("--json", options.json, "Print the summary as one JSON object");
    app.add_option("--log", options.logPath, "Write every message to this file, as JSON Lines")
        ->type_name("FILE")
        ->check(requireFileName);
#ifdef VADELWATCH_MAP
    app.add_option("--map", options.mapPath, "Draw boundary and points to this file, .png or .svg")
        ->type_name("FILE")
        ->check(requireFileName)
        ->check(requirePictureFileName);
    app.add_option("--map-colour", options.mapColour, "What colours the kept points: density or elevation")
        ->type_name("BY")
        ->check(CLI::IsMember({"density", "elevation"}))
        ->needs("--map");
    app.add_option("--map-size", options.mapSize, "Size of the map in pixels, from 800x600 to 4096x4096")
        ->type_name("WIDTHxHEIGHT")
        ->check(requirePictureSize)
        ->needs("--map");
#endif
}

} // namespace

CommandLineOutcome readCommandLine(int argc, const char* const* argv) {
    CLI::App app(description, "Vadelwatch");
    WatchOptions options;
    addArguments(app, options);
    addOptions(app, options);
    app.set_help_flag("-h,--help", "Show this help and exit");
    app.set_version_flag("--version", "Vadelwatch " VADELWATCH_VERSION, "Show the version and exit");
    app.footer(footer);
    // An argument may hold control characters, and a terminal obeys some of them.
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return shownName(error.what()) + "\nRun with --help for more information.\n";
    });

    CommandLineOutcome outcome;
    try {
        app.parse(argc, argv);
#ifdef VADELWATCH_MAP
        options.worldFilePath = worldFileOf(options.mapPath);
#endif
        outcome.options = options;
    } catch (const CLI::ParseError& error) {
        std::ostringstream output;
        std::ostringstream errors;
        outcome.exitStatus = app.exit(error, output, errors) == 0 ? 0 : usageErrorStatus;
        outcome.standardOutput = output.str();
        outcome.standardError = errors.str();
    }
    return outcome;
}

std::vector<std::string> toolArguments(const WatchOptions& options) {
    std::vector<std::string> arguments{options.inputDirectoryPath, options.outputDirectoryName,
                                       options.boundaryFilePath, "-pipe"};
    if (options.language) {
        arguments.push_back("-lang=" + *options.language);
    }
    return arguments;
}

// Uses the library of the tool, in the same version: two ways to split a path would differ somewhere.
RunDirectories runDirectories(const WatchOptions& options) {
    const boost::filesystem::path inputPath(options.inputDirectoryPath);
    const boost::filesystem::path parent = inputPath.parent_path();
    return {(parent / inputPath.filename()).string(), (parent / options.outputDirectoryName).string()};
}

} // namespace vadelwatch
