#include "watch/watch_options.hpp"

#include "messages/companion_messages.hpp"
#include "watch/map/picture_file.hpp"
#include "watch/show/messages.hpp"

#include <CLI/CLI.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/trim.hpp>

namespace vadelwatch {

namespace {

constexpr const char* description =
    "Starts the Vadelclip next to it, shows its progress, sums up what it did and checks its output.";

constexpr const char* footer =
    "Exit status: 0 finished, 1 the tool failed, 2 wrong arguments or a log, map or summary that\n"
    "cannot be written, 3 the output does not add up to total_node_count.txt, 4 the tool did not\n"
    "start or ended abnormally.";

std::string requireFileName(const std::string& path) {
    if (path == "-") {
        return translateMessage("standard output is for the summary, so - is not accepted; name a file");
    }
    return path.empty() ? translateMessage("needs the name of a file") : "";
}

#ifdef VADELWATCH_MAP
std::string requirePictureFileName(const std::string& path) {
    return isPictureFileName(path) ? "" : formatMessage("the name must end in .png or .svg: {0}", path);
}

std::string requirePictureSize(const std::string& size) {
    return readPictureSize(size) ? "" : formatMessage("must be WIDTHxHEIGHT, from 800x600 to 4096x4096: {0}", size);
}
#endif

/// Replaces `CLI::IsMember`, whose message is English.
CLI::Validator requireOneOf(const std::vector<std::string>& words) {
    const auto check = [words](const std::string& word) {
        const bool isKnown = std::find(words.begin(), words.end(), word) != words.end();
        return isKnown ? "" : formatMessage("must be one of {0}, not {1}", boost::algorithm::join(words, ", "), word);
    };
    return {check, ""};
}

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
    app.add_flag("--quiet", options.quiet, "Show errors only")->disable_flag_override();
    app.add_option("--progress", options.progress, "How to show progress: auto, bar, plain or none")
        ->type_name("HOW")
        ->check(requireOneOf({"auto", "bar", "plain", "none"}));
    app.add_flag("--verbose", options.verbose, "Add a table of the node files to the summary")->disable_flag_override();
    app.add_flag("--json", options.json, "Print the summary as one JSON object")->disable_flag_override();
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
        ->check(requireOneOf({"density", "elevation"}))
        ->needs("--map");
    app.add_option("--map-size", options.mapSize, "Size of the map in pixels, from 800x600 to 4096x4096")
        ->type_name("WIDTHxHEIGHT")
        ->check(requirePictureSize)
        ->needs("--map");
#endif
}

/// Returns what is wrong in the language of the messages: those of the library are English. Its errors have the name of
/// the option only in their texts, so this function searches for it there.
std::string reworded(const CLI::App& app, const CLI::Error& error) {
    const std::string english = error.what();
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        return formatMessage("Vadelwatch: unexpected argument: {0}", boost::algorithm::join(app.remaining(), " "));
    }
    if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr) {
        return shownName("Vadelwatch: " + english);
    }
    const auto isHyphen = [](char character) { return character == '-'; };
    std::string name;
    for (const CLI::Option* const option : app.get_options()) {
        const std::string each = option->get_name();
        // A refused value of a flag has the name without its hyphens.
        if (each.size() > name.size() &&
            english.find(boost::algorithm::trim_left_copy_if(each, isHyphen)) != std::string::npos) {
            name = each;
        }
    }
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        return formatMessage("Vadelwatch: the argument {0} is missing.", name);
    }
    if (dynamic_cast<const CLI::RequiresError*>(&error) != nullptr) {
        return formatMessage("Vadelwatch: {0} needs --map.", name);
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        if (app.get_option(name)->get_items_expected_max() == 0) {
            return formatMessage("Vadelwatch: {0} takes no value.", name);
        }
        return app.get_option(name)->count() > 1 ? formatMessage("Vadelwatch: {0} may be given only once.", name)
                                                 : formatMessage("Vadelwatch: {0} needs a value.", name);
    }
    return shownName("Vadelwatch: " + english);
}

/// Returns a hint if an argument is an option of ours with one hyphen, as the tool spells its options.
std::string meantOption(const CLI::App& app, int argc, const char* const* argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const std::string option = '-' + argument.substr(0, argument.find('='));
        if (argument.starts_with('-') && option.size() > 3 && app.get_option_no_throw(option) != nullptr) {
            return formatMessage("Did you mean {0}?", '-' + argument) + "\n";
        }
    }
    return {};
}

/// Returns the first line of the help, which names the arguments.
std::string usageLine(const CLI::App& app) {
    const std::string usage = boost::algorithm::trim_copy(CLI::Formatter().make_usage(&app, app.get_name()));
    return formatMessage("Usage: {0}", usage.substr(usage.find(app.get_name()))) + "\n";
}

} // namespace

std::optional<std::string> wantedLanguage(int argc, const char* const* argv) {
    std::optional<std::string> language;
    CLI::App app;
    app.set_help_flag();
    app.allow_extras();
    app.add_option("--lang", language);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Error&) {
        // An option without its value: `readCommandLine` reports it.
    }
    return vadelclip::toolLanguage(language);
}

CommandLineOutcome readCommandLine(int argc, const char* const* argv) {
    CLI::App app(description, "Vadelwatch");
    WatchOptions options;
    addArguments(app, options);
    addOptions(app, options);
    app.set_help_flag("-h,--help", "Show this help and exit")->disable_flag_override();
    app.set_version_flag("--version", "Vadelwatch " VADELWATCH_VERSION, "Show the version and exit")
        ->disable_flag_override();
    app.footer(footer);
    app.failure_message([argc, argv](const CLI::App* failed, const CLI::Error& error) {
        return reworded(*failed, error) + "\n" + meantOption(*failed, argc, argv) + usageLine(*failed) +
               translateMessage("Run with --help for more information.") + "\n";
    });

    CommandLineOutcome outcome;
    if (vadelclip::parseCommandLine(app, argc, argv, outcome)) {
        options.worldFilePath = worldFileOf(options.mapPath);
        outcome.options = options;
    }
    return outcome;
}

std::vector<std::string> toolArguments(const WatchOptions& options) {
    std::vector<std::string> arguments{options.inputDirectoryPath, options.outputDirectoryName,
                                       options.boundaryFilePath, "-pipe"};
    if (const std::optional<std::string> language = vadelclip::toolLanguage(options.language)) {
        arguments.push_back("-lang=" + *language);
    }
    return arguments;
}

} // namespace vadelwatch
