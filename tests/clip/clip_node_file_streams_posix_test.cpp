#include "clip/clip_node_file.hpp"

#include "support/child_process_support.hpp"
#include "support/clip_pass_support.hpp"
#include "support/sending.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace vadelclip {

// The output is a FIFO that is full, so that writing the header waits until another thread has emptied it.
TEST(ClipNodeFileStreams, writesHeaderBeforeSendingState) {
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

} // namespace vadelclip
