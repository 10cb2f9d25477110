#include "support/run_support.hpp"

#include "clip/clip_elevation_data.hpp"
#include "support/console_support.hpp"
#include "support/recording_messages.hpp"

#include <boost/filesystem/exception.hpp>
#include <gtest/gtest.h>

namespace vadelclip {

const std::string squareBoundaryFile = R"(<VADELSIM><VadeDGM><group type="boundaries"><polygon id="1">
<point x="0" y="0"/><point x="10" y="0"/><point x="10" y="10"/><point x="0" y="10"/>
</polygon></group></VadeDGM></VADELSIM>
)";

std::ostream& operator<<(std::ostream& output, const RunOutcome& outcome) {
    output << "result " << outcome.result << "\nthrown '" << outcome.thrown << "'\nconsole '" << outcome.console
           << "'\n";
    for (const std::string& call : outcome.calls) {
        output << "call " << call << '\n';
    }
    for (const auto& [path, content] : outcome.created) {
        output << "file " << path << " '" << content << "'\n";
    }
    return output;
}

RunOutcome stoppedRun(const std::vector<std::string>& errorTexts, const FileTree& created) {
    RunOutcome outcome{1, "", "", {}, created};
    for (const std::string& text : errorTexts) {
        outcome.console += text + "\n";
        outcome.calls = joined({outcome.calls, errorCalls(text)});
    }
    return outcome;
}

RunOutcome thrownRun(const std::string& function, const Calls& calls, const FileTree& created) {
    return {-99, function, "", calls, created};
}

RunOutcome finishedRun(std::int32_t totalKeptNodes, const Calls& passCalls, FileTree created) {
    created["base/out/"] = "";
    created["base/out/total_node_count.txt"] = std::to_string(totalKeptNodes) + "\n";
    return {0, "", "", joined({passCalls, closingCalls()}), created};
}

ClipRun::ClipRun() {
    directory.makeDirectory("base/data");
    directory.write("area.xml", squareBoundaryFile);
}

RunOutcome ClipRun::run() {
    const FileTree before = directory.tree();
    clearRecordedCalls();
    RunOutcome outcome;
    {
        const ConsoleCapture console;
        try {
            outcome.result = clipElevationData(boundarySet, inputParentDirectory, inputDirectoryName,
                                               outputDirectoryName, boundaryFilePath);
        } catch (const boost::filesystem::filesystem_error& error) {
            const std::string text = error.what();
            outcome.thrown = text.substr(0, text.find(": "));
        }
        outcome.console = console.text();
    }
    outcome.calls = withoutSignOfNan(recordedCalls());
    outcome.created = directory.tree();
    for (const auto& [path, content] : before) {
        const auto entry = outcome.created.find(path);
        EXPECT_NE(outcome.created.end(), entry) << path << " was removed";
        if (entry != outcome.created.end() && entry->second == content) {
            outcome.created.erase(entry);
        }
    }
    outcome.created = withoutTextMode(outcome.created);
    return outcome;
}

} // namespace vadelclip
