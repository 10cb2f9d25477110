#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

void addEntry(FileTree& tree, const fs::path& root, const fs::directory_entry& entry) {
    const std::string name = entry.path().lexically_relative(root).string();
    if (entry.is_symlink()) {
        tree[name] = "link";
    } else if (entry.is_directory()) {
        tree[name + "/"] = "";
    } else if (entry.is_regular_file()) {
        tree[name] = readFile(entry.path().string());
    } else {
        tree[name] = "special";
    }
}

void makeFifo(const std::string& path) {
    EXPECT_EQ(0, mkfifo(path.c_str(), 0600)) << path;
}

/// A reader that has gone away is an ordinary end of a serving.
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

TemporaryDirectory::TemporaryDirectory() {
    std::string name = (fs::temp_directory_path() / "vadelclip-XXXXXX").string();
    EXPECT_NE(nullptr, mkdtemp(name.data()));
    directory = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code error;
    fs::remove_all(directory, error);
}

std::string TemporaryDirectory::pathOf(const std::string& name) const {
    return directory + "/" + name;
}

std::string TemporaryDirectory::write(const std::string& name, const std::string& content) const {
    const fs::path path = pathOf(name);
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << content << std::flush;
    EXPECT_TRUE(file.good()) << path;
    return path.string();
}

std::string TemporaryDirectory::makeDirectory(const std::string& name) const {
    fs::create_directories(pathOf(name));
    return pathOf(name);
}

std::string TemporaryDirectory::makeLink(const std::string& name, const std::string& target) const {
    fs::create_directories(fs::path(pathOf(name)).parent_path());
    fs::create_symlink(target, pathOf(name));
    return pathOf(name);
}

FileTree TemporaryDirectory::tree() const {
    FileTree result;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory)) {
        addEntry(result, directory, entry);
    }
    return result;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

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
        // The server waits for a reader: here is one.
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
    // The next opening meets a new FIFO, or nothing behind the last one. This must be so before the reader gets on.
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
