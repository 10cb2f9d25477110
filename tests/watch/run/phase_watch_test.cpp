#include "watch/run/phase_watch.hpp"

#include "app/standard_descriptors.hpp"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
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

} // namespace vadelwatch
