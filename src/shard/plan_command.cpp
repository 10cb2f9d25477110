#include "process/run_directories.hpp"
#include "shard/commands.hpp"
#include "shard/input_scan.hpp"
#include "shard/job.hpp"
#include "shard/locked_directory.hpp"
#include "shard/messages.hpp"
#include "shard/tool_run.hpp"

#include <boost/filesystem/exception.hpp>
#include <fmt/format.h>

#include <filesystem>
#include <iostream>
#include <random>
#include <sys/stat.h>

namespace vadelshard {

namespace {

namespace fs = std::filesystem;

/// The paths of a job as the tool makes them from its arguments. The output has no separators at its end.
struct JobPaths : vadelclip::RunDirectories {
    std::string boundary;
};

JobPaths pathsOf(const std::vector<std::string>& toolArguments) {
    JobPaths paths{vadelclip::runDirectories(toolArguments[0], toolArguments[1]), toolArguments[2]};
    while (paths.output.size() > 1 && paths.output.ends_with('/')) {
        paths.output.pop_back();
    }
    return paths;
}

/// Starts the tool, which refuses the job and prints why.
int letToolRefuse(const PlanOptions& options) {
    std::vector<std::string> arguments = options.toolArguments;
    arguments.push_back("-lang=" + options.language);
    return runTool(arguments);
}

bool isDirectory(const std::string& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

/// Returns true if the tool would stop before it reads the boundary file or a node file.
bool toolWouldRefuse(const JobPaths& paths) {
    struct stat boundary {};
    return !isDirectory(paths.parent) || !isDirectory(fs::path(paths.output).parent_path().string()) ||
           !isDirectory(paths.input) || exists(paths.output) || stat(paths.boundary.c_str(), &boundary) != 0 ||
           S_ISDIR(boundary.st_mode) || !isReadable(paths.boundary);
}

/// Copies the boundary file and lets the tool read the copy in a job without node files.
///
/// @return false if the tool refuses it. Otherwise the tool has made an output directory.
bool copyBoundary(const JobPaths& paths, const std::string& directory) {
    struct stat status {};
    if (stat(paths.boundary.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        throw Failure(
            formatMessage("{0} is not a regular file, so it cannot be copied for every shard.", paths.boundary));
    }
    const std::string copy = directory + "/boundary.xml";
    writeWholeFile(copy, readWholeFile(paths.boundary));
    makeDirectory(directory + "/probe");
    makeDirectory(directory + "/probe/in");
    runTool({directory + "/probe/in", "out", copy, "-lang=en"}, "/dev/null", "/dev/null");
    const bool isAccepted = exists(directory + "/probe/out");
    removeAll(directory + "/probe");
    return isAccepted;
}

std::string randomId() {
    std::random_device random;
    return fmt::format("{:08x}{:08x}", random(), random());
}

void reportUnreadable(const InputScan& scan) {
    if (!scan.unreadable.empty()) {
        std::cerr << formatMessage(
                         "Node files that cannot be opened and are left out, as the tool does: {0}. The first is {1}.",
                         std::to_string(scan.unreadable.size()), scan.unreadable.front())
                  << '\n';
    }
}

/// The directory of a plan until it is published. If the plan fails, nothing of the work directory is left.
class UnpublishedPlan {
public:
    UnpublishedPlan(const WorkDirectory& workDirectory, const WorkLock& workLock)
        : work(workDirectory), lock(workLock), directory(workDirectory.plan() + ".new") {
        removeAll(directory); // left by a process that was killed
        makeDirectory(directory);
    }
    UnpublishedPlan(const UnpublishedPlan&) = delete;
    UnpublishedPlan& operator=(const UnpublishedPlan&) = delete;
    ~UnpublishedPlan() {
        if (!exists(work.plan())) {
            std::error_code ignored;
            for (const std::string& made : {directory, work.attempts(), work.done()}) {
                fs::remove_all(made, ignored);
            }
            lock.removeEmptyDirectory();
        }
    }

    const std::string& path() const { return directory; }

private:
    const WorkDirectory& work;
    const WorkLock& lock;
    std::string directory;
};

/// @return false if the tool refuses the job. Nothing is published then.
bool makePlan(const PlanOptions& options, const JobPaths& paths, const WorkDirectory& work,
              const std::string& unpublished) {
    InputScan scan;
    try {
        scan = scanInput(paths.input);
    } catch (const boost::filesystem::filesystem_error&) {
        return false;
    }
    if (!scan.hasNodeFile || !copyBoundary(paths, unpublished)) {
        return false;
    }
    reportUnreadable(scan);
    std::vector<Unit> units;
    for (const Unit& file : scan.files) {
        for (Unit& unit : cutIntoUnits(paths.input, file, options.part)) {
            units.push_back(std::move(unit));
        }
    }
    Job job{randomId(),        fs::absolute(paths.input).string(),
            options.language,  options.shards,
            options.part,      0,
            scan.files.size(), units.size()};
    writePlan(unpublished, job, distribute(std::move(units), options.shards));
    for (const std::string& directory : {work.attempts(), work.done()}) {
        if (!exists(directory)) {
            makeDirectory(directory);
        }
    }
    moveFile(unpublished, work.plan());
    return true;
}

/// Returns true if an existing plan is the one that these arguments make.
bool isSamePlan(const PlanOptions& options, const JobPaths& paths, const WorkDirectory& work) {
    const Job job = readJob(work);
    return job.inputDirectory == fs::absolute(paths.input).string() && job.wantedShards == options.shards &&
           job.part == options.part && readWholeFile(paths.boundary) == readWholeFile(work.boundary());
}

/// Makes the plan, unless an earlier command has made it.
///
/// @return false if the tool refuses the job.
bool planLocked(const PlanOptions& options, const JobPaths& paths, const WorkDirectory& work) {
    const WorkLock lock(work.path, true);
    // A merge may have made the output directory while this command waited for the lock.
    if (!exists(work.published()) && toolWouldRefuse(paths)) {
        lock.removeEmptyDirectory();
        return false;
    }
    if (!exists(work.plan())) {
        const UnpublishedPlan unpublished(work, lock);
        return makePlan(options, paths, work, unpublished.path());
    }
    if (!isSamePlan(options, paths, work)) {
        throw Failure(formatMessage("{0} is the work directory of a job with other arguments. Remove it to start anew.",
                                    work.path));
    }
    requireSameFiles(work, paths.input);
    return true;
}

/// Prints the number of shards for scripts.
int printShards(const WorkDirectory& work) {
    std::cout << readJob(work).shards << '\n';
    return finishedStatus;
}

} // namespace

int planJob(const PlanOptions& options) {
    constexpr std::size_t toolArgumentCount = 3;
    if (options.toolArguments.size() != toolArgumentCount) {
        return letToolRefuse(options);
    }
    const JobPaths paths = pathsOf(options.toolArguments);
    const WorkDirectory work{paths.output + ".shards"};
    // When this file exists, the output directory belongs to this job, so the tool must not refuse it.
    if (exists(work.published())) {
        return printShards(work);
    }
    if (toolWouldRefuse(paths)) {
        return letToolRefuse(options);
    }
    return planLocked(options, paths, work) ? printShards(work) : letToolRefuse(options);
}

} // namespace vadelshard
