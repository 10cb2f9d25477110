#include "clip/clip_node_file.hpp"

#include "support/child_process_support.hpp"
#include "support/clip_pass_support.hpp"
#include "support/recording_messages.hpp"
#include "support/sending.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace vadelclip {

namespace {

/// Whether a descriptor of this process stands for the file.
bool isOpen(const std::string& path) {
    struct stat wanted {};
    struct stat found {};
    EXPECT_EQ(0, stat(path.c_str(), &wanted)) << path;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        if (fstat(descriptor, &found) == 0 && found.st_dev == wanted.st_dev && found.st_ino == wanted.st_ino) {
            return true;
        }
    }
    return false;
}

} // namespace

// The output is a FIFO that is full, so that writing the header waits until another thread has emptied it.
TEST(ClipNodeFileStreams, theHeaderIsWrittenBeforeTheStateIsSent) {
    ClipPass pass;
    pass.directory.write("in/a.xyz", "x;y;z\n5;5;1\n");
    ASSERT_EQ(0, mkfifo(pass.outputPath.c_str(), 0600));
    const ChildOutcome outcome = runWithPipe([&pass] {
        const int fifo = open(pass.outputPath.c_str(), O_RDWR | O_NONBLOCK);
        char byte = 'a';
        while (write(fifo, &byte, 1) == 1) {
        }
        MessageSender::Instance(false);
        std::thread reader([fifo] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            mark("emptied");
            char bytes[4096];
            while (read(fifo, bytes, sizeof bytes) > 0) {
            }
        });
        clipNodeFile(pass.inputPath, pass.outputPath, 1, BoundaryIndex(pass.boundary), 0.0, 1);
        reader.join();
    });
    EXPECT_EQ((ChildOutcome{0, "MessageSender 0\n-- emptied\nStateMessage 1 true Clipping elevation data...\n"
                               "end StateMessage\nProgressMessage 0 100 1\nOnProgress 0 false\nend ProgressMessage\n"}),
              outcome);
}

// Who reads the end of a file's progress may take the output away at once.
TEST(ClipNodeFileStreams, bothFilesAreClosedBeforeTheProgressEnds) {
    ClipPass pass;
    Calls open;
    watchRecordedCalls([&pass, &open](const std::string& call) {
        if (call.ends_with("ProgressMessage") || call.starts_with("OnProgress")) {
            open.push_back(call + (isOpen(pass.inputPath) ? " input" : "") +
                           (isOpen(pass.outputPath) ? " output" : ""));
        }
    });
    pass.run("x;y;z\n5;5;1\n", 1);
    watchRecordedCalls({});
    EXPECT_EQ((Calls{"OnProgress 0 false input output", "end ProgressMessage"}), open);
}

} // namespace vadelclip
