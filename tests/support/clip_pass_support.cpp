#include "support/clip_pass_support.hpp"

#include "clip/clip_node_file.hpp"
#include "support/console_support.hpp"
#include "support/recording_messages.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

namespace {

/// Returns the part of a tree inside a directory ("out/"), or outside of it.
FileTree partOf(const FileTree& tree, const std::string& directory, bool inside) {
    FileTree part;
    for (const auto& [path, content] : tree) {
        if (path.starts_with(directory) == inside) {
            part[inside ? path.substr(directory.size()) : path] = content;
        }
    }
    part.erase("");
    return part;
}

} // namespace

std::ostream& operator<<(std::ostream& output, const PassOutcome& outcome) {
    output << "kept " << outcome.keptNodes << "\nconsole '" << outcome.console << "'\n";
    for (const auto& [path, content] : outcome.outputDirectory) {
        output << "file " << path << " '" << content << "'\n";
    }
    for (const std::string& call : outcome.calls) {
        output << "call " << call << '\n';
    }
    return output;
}

PassOutcome ClipPass::run(std::int32_t lineCount, double linesDone, std::int32_t totalLines) {
    const FileTree before = directory.tree();
    clearRecordedCalls();
    PassOutcome outcome;
    {
        const ConsoleCapture console;
        outcome.keptNodes =
            clipNodeFile(inputPath, outputPath, lineCount, BoundaryIndex(boundary), linesDone, totalLines);
        outcome.console = console.text();
    }
    outcome.calls = callsSoFar();
    const FileTree after = directory.tree();
    outcome.outputDirectory = withoutTextMode(partOf(after, "out/", true));
    EXPECT_EQ(partOf(before, "out/", false), partOf(after, "out/", false)) << "changed outside the output directory";
    return outcome;
}

Calls ClipPass::callsSoFar() {
    return withoutSignOfNan(recordedCalls());
}

} // namespace vadelclip
