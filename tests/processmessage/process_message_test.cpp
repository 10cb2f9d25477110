#include <ProcessMessage.h>

#include "support/child_process_support.hpp"
#include "support/sending.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace vadelclip {

// The messages that a controlling process receives. Each test runs in a new process: a process has only one sender.

TEST(ProcessMessageLayer, messagesArriveInTheOrderOfConstruction) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        { const StateMessage message(1, "Clipping", true); }
        {
            ProgressMessage progress(0.0, 100.0, 2);
            progress.OnProgress(0, false);
            progress.OnProgress(1, false);
        }
        sendError("first");
        sendError("second");
        walkClosingRange();
        { const FinishMessage message(1, "Finished"); }
        { const FailedMessage message(1, "Failed"); }
    });
    EXPECT_EQ((ChildOutcome{0, "{\"type\":\"state\",\"level\":1,\"text\":\"Clipping\",\"active\":true}\n" +
                                   percentLine("0.0") + percentLine("50.0") + errorLineOf("first") +
                                   errorLineOf("second") + percentLine("100.0") +
                                   "{\"type\":\"finish\",\"level\":1,\"text\":\"Finished\"}\n"
                                   "{\"type\":\"failed\",\"level\":1,\"text\":\"Failed\"}\n"}),
              outcome);
}

TEST(ProcessMessageLayer, sendsInTheConstructorAndNotInTheDestructor) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        mark("sender");
        {
            const ErrorMessage message(2, "a");
            mark("before its end");
        }
        mark("after its end");
        ProgressMessage progress(0.0, 100.0, 2);
        mark("range");
        progress.OnProgress(0, false);
        mark("step");
    });
    EXPECT_EQ((ChildOutcome{0, "-- sender\n" + errorLineOf("a") + "-- before its end\n-- after its end\n-- range\n" +
                                   percentLine("0.0") + "-- step\n"}),
              outcome);
}

TEST(ProcessMessageLayer, writesEachLineAtOnce) {
    const ChildOutcome outcome = runWithPackets([] {
        MessageSender::Instance(true);
        sendError("a\nb");
        walkRange(0.0, 100.0, 2, 2);
        sendError(std::string(20000, 'a'));
    });
    // `runWithPackets` appends a bar after each write.
    EXPECT_EQ((ChildOutcome{0, errorLineOf("a\\nb") + "|" + percentLine("0.0") + "|" + percentLine("50.0") + "|" +
                                   errorLineOf(std::string(20000, 'a')) + "|"}),
              outcome);
}

TEST(ProcessMessageLayer, dropsEverythingOutsidePipeMode) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(false);
        { const StateMessage message(1, "Clipping", true); }
        walkRange(0.0, 100.0, 10, 10);
        sendError("error");
        walkClosingRange();
        { const FinishMessage message(1, "Finished"); }
        { const FailedMessage message(1, "Failed"); }
        mark("end");
    });
    EXPECT_EQ((ChildOutcome{0, "-- end\n"}), outcome);
}

TEST(ProcessMessageLayer, onlyTheFirstCallOfInstanceCounts) {
    const ChildOutcome outcome = runWithPipe([] {
        const MessageSender* const first = &MessageSender::Instance(true);
        if (&MessageSender::Instance(false) != first) {
            std::abort();
        }
        sendError("still there");
    });
    EXPECT_EQ((ChildOutcome{0, errorLineOf("still there")}), outcome);

    const ChildOutcome dropped = runWithPipe([] {
        MessageSender::Instance(false);
        MessageSender::Instance(true);
        sendError("dropped");
    });
    EXPECT_EQ((ChildOutcome{0, ""}), dropped);
}

TEST(ProcessMessageLayer, dropsMessagesWithoutASender) {
    const ChildOutcome outcome = runWithPipe([] {
        sendError("too early");
        walkRange(0.0, 100.0, 10, 10);
        MessageSender::Instance(true);
        sendError("in time");
    });
    EXPECT_EQ((ChildOutcome{0, errorLineOf("in time")}), outcome);
}

TEST(ProcessMessageLayer, dropsMessagesAfterTheEndOfTheSender) {
    const ChildOutcome outcome = runWithPipe([] {
        // Registered before the destruction of the sender, so it runs after it.
        std::atexit([] {
            sendError("too late");
            walkRange(0.0, 100.0, 10, 10);
        });
        MessageSender::Instance(true);
        sendError("in time");
        std::exit(7);
    });
    EXPECT_EQ((ChildOutcome{7, errorLineOf("in time")}), outcome);
}

TEST(ProcessMessageLayer, senderLivesUntilTheProcessExits) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        std::atexit([] { sendError("at exit"); });
        std::exit(0);
    });
    EXPECT_EQ((ChildOutcome{0, errorLineOf("at exit")}), outcome);
}

} // namespace vadelclip
