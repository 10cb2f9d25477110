#include "shard/job.hpp"

#include "shard/job_status.hpp"
#include "shard/messages.hpp"
#include "support/file_support.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace vadelshard {
namespace {

using vadelclip::TemporaryDirectory;

class JobFiles : public testing::Test {
protected:
    WorkDirectory makeWork() const { return {directory.makeDirectory("out.shards")}; }

    TemporaryDirectory directory;
};

TEST_F(JobFiles, readsPlanThatWasWritten) {
    const WorkDirectory work = makeWork();
    directory.makeDirectory("out.shards/plan");
    std::string everyByte;
    for (int byte = 1; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
    }
    const Job job{"12ab", "/in\xff%", "de@euro", 10, 2147483647, 0, 2, 3};
    const Shard first{{everyByte, {5'000'000'000, -1}, 7, 4'999'999'999}, {"%41", {1, 2}, 0, 1}};
    const Shard second{{"b", {0, 1'700'000'000'123'456'789}, 0, 0}};
    writePlan(work.plan(), job, {first, second});

    EXPECT_EQ(readShard(work, 0), first);
    EXPECT_EQ(readShard(work, 1), second);
    const Job read = readJob(work);
    EXPECT_EQ(read.shards, 2U);
    EXPECT_EQ(
        std::tie(read.id, read.inputDirectory, read.language, read.wantedShards, read.part, read.files, read.units),
        std::tie(job.id, job.inputDirectory, job.language, job.wantedShards, job.part, job.files, job.units));
}

TEST_F(JobFiles, failsForDamagedFiles) {
    const WorkDirectory work = makeWork();
    EXPECT_THROW(readJob(work), Failure);
    for (const char* const content :
         {"", "[]", "{}", R"({"id":1})", R"({"units":[{"name":"a"}]})", R"({"units":[1]})"}) {
        directory.write("out.shards/plan/job.json", content);
        directory.write("out.shards/plan/0.json", content);
        EXPECT_THROW(readJob(work), Failure) << content;
        EXPECT_THROW(readShard(work, 0), Failure) << content;
    }
}

TEST_F(JobFiles, findsStatusOfShards) {
    const WorkDirectory work = makeWork();
    directory.makeDirectory("out.shards/done/1");
    writeReport(work.done(1), {{3, 0, 4'000'000'000}, {9, 0, 1}});
    Job job;
    job.shards = 3;
    const JobStatus status = readStatus(work, job);
    EXPECT_EQ(status.done, 1U);
    EXPECT_EQ(status.keptLines, 4'000'000'003U);
    EXPECT_THAT(status.missing, testing::ElementsAre(0U, 2U));
}

TEST_F(JobFiles, areMergedAndRemovedOnlyNextToOutput) {
    const WorkDirectory work = makeWork();
    EXPECT_FALSE(work.isMergedAndRemoved());
    directory.write("out/total_node_count.txt", "0\n");
    EXPECT_TRUE(work.isMergedAndRemoved());
    directory.write("out.shards/lock", "");
    EXPECT_TRUE(work.isMergedAndRemoved());
    directory.makeDirectory("out.shards/plan");
    EXPECT_FALSE(work.isMergedAndRemoved());
}

TEST(WorkDirectoryAt, removesSlashesAndRequiresSuffix) {
    EXPECT_EQ(workDirectoryAt("a/b.shards//").path, "a/b.shards");
    EXPECT_EQ(workDirectoryAt("a/b.shards").output(), "a/b");
    for (const char* const path : {"", "/", "a", ".shards", "a.shards/x"}) {
        EXPECT_THROW(workDirectoryAt(path), Failure) << path;
    }
}

TEST(ScratchRoot, prefersVariableOfSlurm) {
    const char* const value = std::getenv("TMPDIR");
    const std::string former = value == nullptr ? "" : value; // a copy, because `setenv` overwrites the value
    setenv("SLURM_TMPDIR", "/slurm", 1);
    setenv("TMPDIR", "/tmpdir", 1);
    EXPECT_EQ(scratchRoot(), "/slurm");
    setenv("SLURM_TMPDIR", "", 1);
    EXPECT_EQ(scratchRoot(), "/tmpdir");
    unsetenv("SLURM_TMPDIR");
    EXPECT_EQ(scratchRoot(), "/tmpdir");
    unsetenv("TMPDIR");
    EXPECT_EQ(scratchRoot(), "/tmp");
    if (value != nullptr) {
        setenv("TMPDIR", former.c_str(), 1);
    }
}

TEST(ArrayExpression, joinsNeighbours) {
    EXPECT_EQ(arrayExpression({}), "");
    EXPECT_EQ(arrayExpression({7}), "7");
    EXPECT_EQ(arrayExpression({0, 1, 2, 3, 7, 9, 10}), "0-3,7,9-10");
}

} // namespace
} // namespace vadelshard
