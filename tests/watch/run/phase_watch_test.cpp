#include "watch/run/phase_watch.hpp"

#include "app/standard_descriptors.hpp"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <thread>
#include <unistd.h>

namespace vadelwatch {

namespace {

using std::chrono::milliseconds;

/// A pipe in which there is no space.
std::array<int, 2> fullPipe() {
    vadelclip::guardStandardDescriptors();
    std::array<int, 2> ends{};
    EXPECT_EQ(0, pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK));
    const std::array<char, 4096> block{};
    while (write(ends[1], block.data(), block.size()) > 0) {
    }
    for (const int end : ends) {
        fcntl(end, F_SETFL, 0);
    }
    return ends;
}

} // namespace

TEST(PhaseWatch, endsWhenItsBarIsRemoved) {
    const std::array<int, 2> pipe = fullPipe();
    std::thread reader;
    {
        OwnOutput output(pipe[1]);
        bool barShown = true;
        std::optional<PhaseWatch> phase(std::in_place, ProgressMode::bar, barShown, output, "checking", [](int) {});
        while (output.waitingBytes() == 0) {
            std::this_thread::sleep_for(milliseconds(1));
        }
        reader = std::thread([&pipe] {
            std::this_thread::sleep_for(milliseconds(50));
            std::array<char, 65536> block{};
            while (read(pipe[0], block.data(), block.size()) > 0) {
            }
        });
        phase.reset();
        EXPECT_EQ(0U, output.waitingBytes());
    }
    close(pipe[1]);
    reader.join();
    close(pipe[0]);
}

TEST(PhaseWatch, keepsSecondSignalThatIsReadWithTheFirst) {
    const auto run = [] {
        // Both signals arrive before the phase. They stay blocked, so that the second one can be found.
        sigset_t both;
        sigemptyset(&both);
        for (const int number : {SIGINT, SIGTERM}) {
            sigaddset(&both, number);
        }
        pthread_sigmask(SIG_BLOCK, &both, nullptr);
        kill(getpid(), SIGINT);
        kill(getpid(), SIGTERM);
        OwnOutput output;
        bool barShown = false;
        const PhaseWatch phase(ProgressMode::none, barShown, output, "checking", [](int number) {
            sigset_t pending;
            sigpending(&pending);
            std::_Exit(number == SIGINT && sigismember(&pending, SIGTERM) == 1 ? EXIT_SUCCESS : EXIT_FAILURE);
        });
        pause();
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

} // namespace vadelwatch
