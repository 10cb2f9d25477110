/// \file
/// One run and all its results.
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
    std::string thrown; ///< Function that failed, if an exception of Boost.Filesystem ended the run.
    std::string console;
    Calls calls;
    FileTree created; ///< Files in the directory that are new or have changed.

    bool operator==(const RunOutcome&) const = default;
};

std::ostream& operator<<(std::ostream& output, const RunOutcome& outcome);

/// Returns the result of a run that reported these errors and stopped.
RunOutcome stoppedRun(const std::vector<std::string>& errorTexts, const FileTree& created = {});

/// Returns the result of a run that an exception ended. The run itself sends no message for it.
RunOutcome thrownRun(const std::string& function, const Calls& calls = {}, const FileTree& created = {});

/// Returns the result of a finished run: the calls of the passes and the created files, except the count file.
RunOutcome finishedRun(std::int32_t totalKeptNodes, const Calls& passCalls, FileTree created = {});

/// An ordinary job: clips base/data to area.xml, which exists, and writes to base/out.
class ClipRun {
public:
    ClipRun();

    /// Runs the job. Expects that it removes no input.
    RunOutcome run();

    TemporaryDirectory directory;
    BoundarySet boundarySet;
    std::string inputParentDirectory = directory.pathOf("base");
    std::string inputDirectoryName = "data";
    std::string outputDirectoryName = "out";
    std::string boundaryFilePath = directory.pathOf("area.xml");
};

} // namespace vadelclip
