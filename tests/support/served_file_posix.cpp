#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace vadelclip {

namespace fs = std::filesystem;

namespace {

void makeFifo(const std::string& path) {
    EXPECT_EQ(0, mkfifo(path.c_str(), 0600)) << path;
}

/// Writes all bytes, or fewer if the reader closes the file.
void writeAll(int descriptor, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = write(descriptor, bytes.data() + done, bytes.size() - done);
        if (written < 0) {
            return;
        }
        done += static_cast<std::size_t>(written);
    }
}

} // namespace

ServedFile::ServedFile(const std::string& path_, std::vector<std::vector<ServingStep>> openings_)
    : path(path_), fifo(aside.pathOf("fifo")), openings(std::move(openings_)) {
    makeFifo(fifo);
    fs::create_symlink(fifo, path);
    server = std::thread([this] { serve(); });
}

ServedFile::~ServedFile() {
    int release = -1;
    if (opened < openings.size()) {
        ADD_FAILURE() << path << " was opened " << opened << " times, expected " << openings.size();
        abandoned = true;
        // The server waits for a reader: this opening releases it.
        release = open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
    }
    server.join();
    close(release);
}

void ServedFile::serve() {
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
    for (const std::vector<ServingStep>& steps : openings) {
        const int descriptor = abandoned ? -1 : open(fifo.c_str(), O_WRONLY);
        if (!abandoned) {
            serveOnce(descriptor, steps);
        }
        close(descriptor);
    }
}

void ServedFile::serveOnce(int descriptor, const std::vector<ServingStep>& steps) {
    // Replaces the FIFO for the next opening, or removes it after the last one, before the reader can continue.
    if (opened + 1 < openings.size()) {
        makeFifo(fifo + ".next");
        fs::rename(fifo + ".next", fifo);
    } else {
        fs::remove(fifo);
    }
    ++opened;
    for (const ServingStep& step : steps) {
        if (const std::string* const bytes = std::get_if<std::string>(&step)) {
            writeAll(descriptor, *bytes);
        } else {
            std::get<std::function<void()>>(step)();
        }
    }
}

} // namespace vadelclip
