/// \file
/// One run with everything it leaves behind.
#pragma once

#include "boundary/boundary_set.hpp"
#include "support/expected_calls_support.hpp"
#include "support/file_support.hpp"

#include <cstdint>
#include <ostream>
#include <string>

namespace vadelclip {

/// A boundary file with the square from (0, 0) to (10, 10).
extern const std::string squareBoundaryFile;

struct RunOutcome {
    std::int32_t result = -99;
    std::string thrown; ///< Function that failed, where the run ended in an exception of Boost.Filesystem.
    std::string console;
    Calls calls;
    FileTree created; ///< What stands in the directory and did not before, or has changed.

    bool operator==(const RunOutcome&) const = default;
};

std::ostream& operator<<(std::ostream& output, const RunOutcome& outcome);

/// A run that stopped with these errors reported, in order.
RunOutcome stoppedRun(const std::vector<std::string>& errorTexts, const FileTree& created = {});

/// A run that ended in an exception without a message of its own.
RunOutcome thrownRun(const std::string& function, const Calls& calls = {}, const FileTree& created = {});

/// A run with the outcome 0, the passes' calls, and `created` but for the count file.
RunOutcome finishedRun(std::int32_t totalKeptNodes, const Calls& passCalls, FileTree created = {});

/// The ordinary job: base/data is clipped to area.xml, which stands there already, into base/out.
class ClipRun {
public:
    ClipRun();

    /// Runs the job. No input may go away.
    RunOutcome run();

    TemporaryDirectory directory;
    BoundarySet boundarySet;
    std::string inputParentDirectory = directory.pathOf("base");
    std::string inputDirectoryName = "data";
    std::string outputDirectoryName = "out";
    std::string boundaryFilePath = directory.pathOf("area.xml");
};

} // namespace vadelclip
