#include "support/file_support.hpp"

#include "text/text_mode.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace vadelclip {

namespace fs = std::filesystem;

namespace {

void addEntry(FileTree& tree, const fs::path& root, const fs::directory_entry& entry) {
    const std::string name = entry.path().lexically_relative(root).generic_string();
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

/// Creates a directory with an unused name.
std::string makeFreshDirectory() {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path path = fs::temp_directory_path() / ("vadelclip-" + std::to_string(random()));
        if (fs::create_directory(path)) {
            return path.generic_string();
        }
    }
    throw std::runtime_error("no fresh directory");
}

} // namespace

TemporaryDirectory::TemporaryDirectory() : directory(makeFreshDirectory()) {}

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
    return pathOf(name);
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

std::string withoutTextMode(const std::string& bytes) {
    if (!platformHasTextMode) {
        return bytes;
    }
    std::string text;
    for (const char byte : bytes) {
        if (byte == '\n' && text.ends_with('\r')) {
            text.back() = '\n';
        } else if (byte == '\n') {
            text += "<bare LF>";
        } else {
            text += byte;
        }
    }
    return text;
}

FileTree withoutTextMode(const FileTree& tree) {
    FileTree result;
    for (const auto& [path, content] : tree) {
        result[path] = withoutTextMode(content);
    }
    return result;
}

} // namespace vadelclip
