#include "clip/input_selection.hpp"

#include "support/catalogue_support.hpp"
#include "support/file_support.hpp"

#include <boost/locale/message.hpp>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <locale>
#include <string>
#include <system_error>
#include <vector>

namespace vadelclip {

namespace {

namespace fs = std::filesystem;

bool isOpen(const std::string& path) {
    for (const fs::directory_entry& descriptor : fs::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (fs::equivalent(descriptor, path, error)) {
            return true;
        }
    }
    return false;
}

/// A catalogue without translations that calls a function at each lookup.
class CallingCatalogue : public boost::locale::message_format<char> {
public:
    explicit CallingCatalogue(std::function<void()> call_) : call(std::move(call_)) {}

    const char* get(int, const char*, const char*) const override {
        call();
        return nullptr;
    }
    const char* get(int, const char*, const char*, int) const override { return nullptr; }
    int domain(const std::string&) const override { return 0; }
    const char* convert(const char* message, std::string&) const override { return message; }

private:
    std::function<void()> call;
};

} // namespace

// The parser translates the text of a rejected header, so the catalogue is called while the header is parsed.
TEST(InputSelection, closesFileBeforeItParsesTheHeader) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a.txt", "y;x;z\n");
    std::vector<bool> open;
    const LocaleRestorer restorer;
    std::locale::global(std::locale(std::locale(), new CallingCatalogue([&] { open.push_back(isOpen(path)); })));
    selectInputFiles(directory.path());
    EXPECT_EQ(std::vector<bool>{false}, open);
}

} // namespace vadelclip
