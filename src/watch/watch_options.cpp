#include "watch/watch_options.hpp"

#include "watch/exit_status.hpp"
#include "watch/map/picture.hpp"
#include "watch/show/shown_name.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

namespace vadelwatch {

namespace {

constexpr const char* description =
    "Starts the Vadelclip beside it, shows its progress, sums up what it did and checks its output.";

constexpr const char* footer =
    "Exit status: 0 finished, 1 the tool failed, 2 wrong arguments or a log, map or summary that\n"
    "cannot be written, 3 the output does not add up to total_node_count.txt, 4 the tool did not\n"
    "start or ended abnormally.";

/// Options that take a value, and how each looks with an empty one.
constexpr std::array<const char*, 3> valueOptions{"--lang", "--log", "--map"};
constexpr std::array<std::string_view, 3> emptyValues{"--lang=", "--log=", "--map="};

void addArguments(CLI::App& app, WatchOptions& options) {
    app.add_option("input-directory-path", options.inputDirectoryPath, "Directory of node files, with its parent")
        ->required();
    app.add_option("output-directory-name", options.outputDirectoryName,
                   "Name of the new directory beside the input directory")
        ->required();
    app.add_option("boundary-file-path", options.boundaryFilePath, "XML file with the polygons")->required();
}

void addOptions(CLI::App& app, WatchOptions& options) {
    app.add_option("--lang", options.language, "Language of the messages; German (de) unless given")
        ->type_name("LANGUAGE");
    app.add_flag("--quiet", options.quiet, "Show errors only");
    app.add_flag("--json", options.json, "Print the summary as one JSON object");
    app.add_option("--log", options.logPath, "Write every message to this file, as JSON Lines")->type_name("FILE");
    app.add_option("--map", options.mapPath, "Draw boundary and points to this file, .png or .svg")->type_name("FILE");
}

/// Options without a value, up to the equals sign that would give them one.
constexpr std::array<std::string_view, 5> valuedFlags{"--quiet=", "--json=", "--help=", "-h=", "--version="};

/// CLI11 would take "--quiet=false" for no flag and "--quiet=" for one.
void refuseFlagValues(int argc, const char* const* argv) {
    for (int i = 1; i < argc && argv[i] != std::string_view("--"); ++i) {
        const std::string_view word = argv[i];
        if (std::find(valueOptions.begin(), valueOptions.end(), word) != valueOptions.end()) {
            // The next word is its value, whatever it looks like.
            ++i;
            continue;
        }
        for (const std::string_view flag : valuedFlags) {
            if (word.starts_with(flag)) {
                throw CLI::ValidationError(std::string(flag.substr(0, flag.size() - 1)), "takes no value");
            }
        }
    }
}

/// CLI11 takes "--log=" for an option without a value, and the next argument for its value. As two arguments, the second
/// of them empty, it is what it says.
std::vector<const char*> withEmptyValues(int argc, const char* const* argv) {
    std::vector<const char*> words;
    bool mayBeOption = true;
    for (int i = 0; i < argc; ++i) {
        const std::string_view word = argv[i];
        mayBeOption = mayBeOption && word != "--";
        const auto* const option = std::find(emptyValues.begin(), emptyValues.end(), word);
        if (mayBeOption && option != emptyValues.end()) {
            words.push_back(valueOptions.at(static_cast<std::size_t>(option - emptyValues.begin())));
            words.push_back("");
        } else {
            words.push_back(argv[i]);
        }
    }
    return words;
}

/// What CLI11 cannot know.
void checkValues(const CLI::App& app, const WatchOptions& options) {
    for (const auto& [option, path] : {std::pair("--log", &options.logPath), std::pair("--map", &options.mapPath)}) {
        const std::size_t given = app.count(option);
        if (given > 0 && path->empty()) {
            throw CLI::ValidationError(option, "needs the name of a file");
        }
    }
    const std::size_t maps = app.count("--map");
    if (maps > 0 && !isPictureFileName(options.mapPath)) {
        throw CLI::ValidationError("--map", "the name must end in .png or .svg: " + options.mapPath);
    }
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
    // The words of a command line may be anything, and a terminal would obey some of it.
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return shownName(error.what()) + "\nRun with --help for more information.\n";
    });

    CommandLineOutcome outcome;
    try {
        refuseFlagValues(argc, argv);
        const std::vector<const char*> words = withEmptyValues(argc, argv);
        app.parse(static_cast<int>(words.size()), words.data());
        checkValues(app, options);
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

} // namespace vadelwatch
